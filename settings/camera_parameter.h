// The camera's parameters as the robot's video device numbers them.
#pragma once

// A plain enum: the ids travel as ints.
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
  kResolution = 14,  // mirrored in the model
  kFrameRate = 15,   // mirrored in the model
  kExposure = 17,
  kActiveCamera = 18,  // mirrored in the model
  kColorSpace = 20,    // mirrored in the model when written
  kExposureCorrection = 21,
  kWhiteBalance = 33,
};
