// The parameters of one camera: which there are, what they may be, what they are now.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "robot/camera/picture_controls.h"

namespace robot {

// The ids are those of the video device's getParam() and setParam().
enum CameraParameter {
  kBrightness = 0,
  kContrast = 1,
  kSaturation = 2,
  kHue = 3,
  kRedChroma = 4,
  kBlueChroma = 5,
  kGain = 6,
  kHorizontalFlip = 7,
  kVerticalFlip = 8,
  kAutoExposition = 11,
  kAutoWhiteBalance = 12,
  kAutoGain = 13,
  kResolution = 14,  // of a subscription, like the frame rate and the colour space
  kFrameRate = 15,
  kExposure = 17,
  kActiveCamera = 18,  // of the robot
  kColorSpace = 20,
  kExposureCorrection = 21,
  kWhiteBalance = 33
};

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
