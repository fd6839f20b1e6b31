// SPDX-License-Identifier: Apache-2.0
// Between the ranges of our parameters and those of a device's controls.
#pragma once

#include "robot/camera/camera_parameters.h"

namespace robot {

// A control as the device describes it. minimum <= initial <= maximum, step > 0.
struct ControlRange {
  int minimum;
  int maximum;
  int step;
  int initial;
};

// Smallest to smallest, largest to largest, and initial to initial where both have room on either
// side of it; evenly in between, to the control's next step. `value` is within the parameter's
// range. toParameter() is toControl() the other way round: a value comes back as it was wherever
// the control's steps are at least as fine as ours, and the nearest one otherwise.
int toControl(const ParameterRange& parameter, const ControlRange& control, int value);
int toParameter(const ParameterRange& parameter, const ControlRange& control, int value);

// Whether a device exposes by itself is a choice among four modes there (V4L2_EXPOSURE_AUTO and so
// on); bit n of `modes` tells whether it has mode n. -1 when none of them will do.
int exposureMode(bool automatic, unsigned modes);
bool isAutomaticExposure(int mode);

}  // namespace robot
