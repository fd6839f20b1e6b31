// SPDX-License-Identifier: Apache-2.0
// The older service for photos and films, which chooses the folder itself.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"
#include "ky/proxy.h"
#include "ky/value.h"

namespace Ky {

// Proxy to the module "KyVisionToolbox". Thread-safe; every call may throw KyError.
class KyVisionToolboxProxy {
 public:
  // Throws KyError when there is no such module.
  explicit KyVisionToolboxProxy(boost::shared_ptr<KyBroker> broker);

  void takePicture();
  void startVideoRecord(const std::string& name);
  // [frame count, file path]
  KyValue stopVideoRecord();

 private:
  boost::shared_ptr<KyProxy> fProxy;
};

}  // namespace Ky
