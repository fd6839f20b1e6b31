// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/control_mapping.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cmath>

namespace robot {
namespace {

struct Span {
  double from;
  double to;
};

double map(double value, Span in, Span out) {
  if (in.to == in.from) return out.from;
  return out.from + (value - in.from) * (out.to - out.from) / (in.to - in.from);
}

template <class Range>
bool hasRoomAround(const Range& range) {
  return range.minimum < range.initial && range.initial < range.maximum;
}

// `value` of the range `in`, as it is in the range `out`.
template <class In, class Out>
double mapped(double value, const In& in, const Out& out) {
  const Span wholeIn{double(in.minimum), double(in.maximum)};
  const Span wholeOut{double(out.minimum), double(out.maximum)};
  if (!hasRoomAround(in) || !hasRoomAround(out)) return map(value, wholeIn, wholeOut);
  const Span lowIn{wholeIn.from, double(in.initial)};
  const Span lowOut{wholeOut.from, double(out.initial)};
  if (value <= in.initial) return map(value, lowIn, lowOut);
  return map(value, {lowIn.to, wholeIn.to}, {lowOut.to, wholeOut.to});
}

}  // namespace

int toControl(const ParameterRange& parameter, const ControlRange& control, int value) {
  const double exact = mapped(value, parameter, control);
  const double steps = std::round((exact - control.minimum) / control.step);
  const double stepped = control.minimum + steps * control.step;
  return static_cast<int>(std::clamp<double>(stepped, control.minimum, control.maximum));
}

int toParameter(const ParameterRange& parameter, const ControlRange& control, int value) {
  const int known = std::clamp(value, control.minimum, control.maximum);
  return static_cast<int>(std::lround(mapped(known, control, parameter)));
}

int exposureMode(bool automatic, unsigned modes) {
  const auto first = [&](int preferred, int other) {
    if ((modes & (1U << preferred)) != 0) return preferred;
    return (modes & (1U << other)) != 0 ? other : -1;
  };
  return automatic ? first(V4L2_EXPOSURE_AUTO, V4L2_EXPOSURE_APERTURE_PRIORITY)
                   : first(V4L2_EXPOSURE_MANUAL, V4L2_EXPOSURE_SHUTTER_PRIORITY);
}

bool isAutomaticExposure(int mode) {
  return mode == V4L2_EXPOSURE_AUTO || mode == V4L2_EXPOSURE_APERTURE_PRIORITY;
}

}  // namespace robot
