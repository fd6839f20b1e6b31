// SPDX-License-Identifier: Apache-2.0
// Films recorded on the robot.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"
#include "ky/proxy.h"
#include "ky/value.h"

namespace Ky {

// Proxy to the module "KyVideoRecorder". Thread-safe; every call may throw KyError.
class KyVideoRecorderProxy {
 public:
  // Throws KyError when there is no such module.
  explicit KyVideoRecorderProxy(boost::shared_ptr<KyBroker> broker);

  // The file's path, where the robot tells it.
  KyValue startRecording(const std::string& folder, const std::string& fileName);
  // [frame count, file path]
  KyValue stopRecording();
  // [recording?, frame count, file path, why it ended by itself] of the film that nobody has
  // stopped yet. Only for robots whose module offers "getState".
  KyValue getState();
  // The film is the caller's from now on, as if it had begun it; false when it is not the one of
  // getState(). Only where the module offers "takeOver".
  bool takeOver(const std::string& path);

 private:
  boost::shared_ptr<KyProxy> fProxy;
};

}  // namespace Ky
