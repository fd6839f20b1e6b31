// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/control_mapping.h"

#include <gtest/gtest.h>
#include <linux/videodev2.h>

namespace robot {
namespace {

ParameterRange rangeOf(int model, int id) {
  return CameraParameters(model).range(id);
}

struct Mapping {
  int model;
  int parameter;
  ControlRange control;
  bool isFine;  // the control's steps are at least as fine as ours
};

// As devices have them.
const Mapping kMappings[] = {{1, kBrightness, {-64, 64, 1, 0}, false},
                             {1, kBrightness, {0, 255, 1, 128}, true},
                             {1, kBrightness, {0, 65535, 1, 100}, false},
                             {1, kContrast, {0, 10, 1, 5}, false},
                             {1, kContrast, {0, 1000, 1, 400}, true},
                             {1, kHue, {-2000, 2000, 1, 0}, true},
                             {2, kHue, {-40, 40, 1, 0}, false},
                             {2, kGain, {0, 1023, 1, 64}, true},
                             {1, kGain, {16, 16, 1, 16}, false},
                             {1, kExposure, {3, 2047, 1, 250}, false},
                             {1, kExposure, {1, 10000, 1, 5000}, true},
                             {2, kWhiteBalance, {2800, 6500, 10, 4600}, true},
                             {1, kExposureCorrection, {0, 12, 1, 6}, true},
                             {1, kHorizontalFlip, {0, 1, 1, 0}, true},
                             {1, kAutoWhiteBalance, {0, 1, 1, 1}, true},
                             {1, kSaturation, {-2147483647 - 1, 2147483647, 1, 0}, true}};

TEST(ControlMapping, KeepsEndsAndTheMiddleAndTheOrder) {
  for (const Mapping& mapping : kMappings) {
    const ParameterRange range = rangeOf(mapping.model, mapping.parameter);
    const ControlRange& control = mapping.control;
    SCOPED_TRACE(std::string(range.name) + " to " + std::to_string(control.maximum));
    EXPECT_EQ(toControl(range, control, range.minimum), control.minimum);
    const int last = range.minimum == range.maximum ? control.minimum : control.maximum;
    EXPECT_EQ(toControl(range, control, range.maximum), last);
    if (range.initial > range.minimum && control.initial > control.minimum &&
        control.initial < control.maximum) {
      EXPECT_EQ(toControl(range, control, range.initial), control.initial);
      EXPECT_EQ(toParameter(range, control, control.initial), range.initial);
    }
    for (int value = range.minimum; value < range.maximum; ++value) {
      EXPECT_LE(toControl(range, control, value), toControl(range, control, value + 1));
      EXPECT_EQ((std::int64_t{toControl(range, control, value)} - control.minimum) % control.step,
                0);
    }
  }
}

TEST(ControlMapping, ReadsBackWhatWasWritten) {
  for (const Mapping& mapping : kMappings) {
    const ParameterRange range = rangeOf(mapping.model, mapping.parameter);
    for (int value = range.minimum; value <= range.maximum; ++value) {
      const int back =
          toParameter(range, mapping.control, toControl(range, mapping.control, value));
      EXPECT_GE(back, range.minimum);
      EXPECT_LE(back, range.maximum);
      EXPECT_TRUE(!mapping.isFine || back == value) << range.name << " " << value;
      // Written once more it changes nothing.
      EXPECT_EQ(toControl(range, mapping.control, back), toControl(range, mapping.control, value))
          << range.name << " " << value;
    }
  }
}

TEST(ControlMapping, KeepsToItsRangeWhateverADeviceSays) {
  const ParameterRange range = rangeOf(1, kBrightness);
  EXPECT_EQ(toParameter(range, {0, 10, 1, 5}, 99), 255);
  EXPECT_EQ(toParameter(range, {0, 10, 1, 5}, -99), 0);
}

constexpr unsigned bit(int mode) {
  return 1U << mode;
}

TEST(ControlMapping, ChoosesAModeOfExposureThatTheDeviceHas) {
  const unsigned webcam = bit(V4L2_EXPOSURE_MANUAL) | bit(V4L2_EXPOSURE_APERTURE_PRIORITY);
  EXPECT_EQ(exposureMode(true, webcam), V4L2_EXPOSURE_APERTURE_PRIORITY);
  EXPECT_EQ(exposureMode(false, webcam), V4L2_EXPOSURE_MANUAL);
  EXPECT_EQ(exposureMode(true, 15), V4L2_EXPOSURE_AUTO);
  EXPECT_EQ(exposureMode(false, bit(V4L2_EXPOSURE_SHUTTER_PRIORITY)),
            V4L2_EXPOSURE_SHUTTER_PRIORITY);
  EXPECT_EQ(exposureMode(true, bit(V4L2_EXPOSURE_MANUAL)), -1);
  EXPECT_EQ(exposureMode(false, bit(V4L2_EXPOSURE_AUTO)), -1);
  for (const bool automatic : {true, false})
    EXPECT_EQ(isAutomaticExposure(exposureMode(automatic, 15)), automatic);
}

}  // namespace
}  // namespace robot
