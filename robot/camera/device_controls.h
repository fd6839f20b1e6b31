// SPDX-License-Identifier: Apache-2.0
// The controls of a Video4Linux device as parameters of a camera.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "robot/camera/camera_parameters.h"
#include "robot/camera/source.h"
#include "zu/mutex.h"

namespace robot {

// Thread-safe. Opens the device for each use and closes it again: controls need no streaming, and
// a device that was pulled out and put back is simply found.
//
// Every call throws KyError when the device can't be opened or refuses.
class DeviceControls : public SourceControls {
 public:
  explicit DeviceControls(std::string path);

  std::optional<int> get(const ParameterRange& parameter) const override;
  bool set(const ParameterRange& parameter, int value) override;

  // Writes once more all that was set: a device that was pulled out has forgotten it. What it does
  // not take any more is logged.
  void restore();

 private:
  const std::string fPath;
  mutable zu::Mutex fMutex;
  std::map<int, std::pair<ParameterRange, int>> fWritten ZU_GUARDED_BY(fMutex);
};

}  // namespace robot
