// SPDX-License-Identifier: Apache-2.0
// Photos taken on the robot.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"
#include "ky/proxy.h"
#include "ky/value.h"

namespace Ky {

// Proxy to the module "KyPhotoCapture". Thread-safe; every call may throw KyError.
class KyPhotoCaptureProxy {
 public:
  // Throws KyError when there is no such module.
  explicit KyPhotoCaptureProxy(boost::shared_ptr<KyBroker> broker);

  // Stores one photo in a folder of the robot; answers where.
  KyValue takePicture(const std::string& folder, const std::string& fileName);

 private:
  boost::shared_ptr<KyProxy> fProxy;
};

}  // namespace Ky
