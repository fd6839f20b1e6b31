// The parameters of one camera: which there are, what they may be, what they are now.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ky/video_device_proxy.h"
#include "robot/camera/picture_controls.h"

namespace robot {

using enum Ky::CameraParameter;

struct ParameterRange {
  int id;
  const char* name;
  int minimum;
  int maximum;
  int initial;
};

// The parameters that a camera of this model keeps for itself: all but those of a subscription and
// of the robot.
std::vector<ParameterRange> parametersOf(int model);

// Thread-bound.
class CameraParameters {
 public:
  // `model`: 1 or 2.
  explicit CameraParameters(int model);

  // Both throw KyError for a parameter that this model has not; set() also for a value out of
  // range.
  int get(int id) const;
  void set(int id, int value);

  PictureControls controls() const;

 private:
  const ParameterRange& require(int id) const;

  int fModel;
  std::map<int, ParameterRange> fRanges;
  std::map<int, int> fValues;
};

}  // namespace robot
