// SPDX-License-Identifier: Apache-2.0
// The cameras' field of view, the same for every source and resolution.
#pragma once

namespace robot {

// Half the field, in radians; left and top are positive.
constexpr float kHalfWidthAngle = 0.41692221f;
constexpr float kHalfHeightAngle = 0.32097778f;

// The angles of a point, from its place as fractions of the picture's width and height. Linear, as
// the viewers take them: angle 0 is the picture's centre.
constexpr float alphaAt(double x) {
  return static_cast<float>(kHalfWidthAngle * (1 - 2 * x));
}
constexpr float betaAt(double y) {
  return static_cast<float>(kHalfHeightAngle * (1 - 2 * y));
}

// The angle that a width or a height takes. Negative, since angles fall from left to right and from
// top to bottom: the angle at the right edge less that at the left one.
constexpr float alphaOver(double width) {
  return static_cast<float>(-2 * kHalfWidthAngle * width);
}
constexpr float betaOver(double height) {
  return static_cast<float>(-2 * kHalfHeightAngle * height);
}

}  // namespace robot
