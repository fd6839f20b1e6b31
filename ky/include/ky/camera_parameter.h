// The parameters of a robot's cameras as its video device numbers them.
#pragma once

namespace Ky {

// For getParam() and setParam(). A plain enum: the ids travel as ints.
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
  kWhiteBalance = 33,
};

}  // namespace Ky
