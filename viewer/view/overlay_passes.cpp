// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/overlay_passes.h"

#include <algorithm>
#include <cmath>

namespace {

// Pens, truncation and odd diameters move an outline by less than this.
constexpr double kMargin = 3;

// Of all distances between a point and the points of the view.
struct Distances {
  double nearest;
  double farthest;
};

struct Axis {
  double nearest;
  double farthest;
};

Axis along(double centre, double low, double high) {
  return {std::max({0.0, low - centre, centre - high}),
          std::max(std::abs(centre - low), std::abs(centre - high))};
}

// A circle reaches as far in every direction; a square's sides are met along the axes.
Distances circleDistances(const Axis& x, const Axis& y) {
  return {std::hypot(x.nearest, y.nearest), std::hypot(x.farthest, y.farthest)};
}

Distances squareDistances(const Axis& x, const Axis& y) {
  return {std::max(x.nearest, y.nearest), std::max(x.farthest, y.farthest)};
}

PassRange clamped(double first, double last, int thickness) {
  const double end = thickness;
  return {static_cast<std::int64_t>(std::floor(std::clamp(first - kMargin, 0.0, end + 1))),
          static_cast<std::int64_t>(std::ceil(std::clamp(last + kMargin, -1.0, end)))};
}

}  // namespace

std::array<PassRange, 2> touchingPasses(const displayObject& item, double centreX, double centreY,
                                        const QRectF& view) {
  const auto range = [&](double first, double last) {
    return clamped(first, last, item.thickness);
  };
  if (item.shape == 1) {
    return {range(view.top() - centreY, view.bottom() - centreY),
            range(view.left() - centreX, view.right() - centreX)};
  }
  if (item.shape != 0 && item.shape != 2) return {PassRange{0, -1}, PassRange{0, -1}};

  const Axis x = along(centreX, view.left(), view.right());
  const Axis y = along(centreY, view.top(), view.bottom());
  const Distances reach = item.shape == 0 ? circleDistances(x, y) : squareDistances(x, y);
  // The radius of pass i is half + i. It shrinks first when the diameter is negative.
  const double half = item.diameter / 2;
  return {range(-half - reach.farthest, -half - reach.nearest),
          range(-half + reach.nearest, -half + reach.farthest)};
}

std::int64_t drawnPasses(int thickness, double centreY) {
  if (thickness < 0) return 0;
  const double skipped = std::clamp(std::floor(-centreY) + 1, 0.0, thickness + 1.0);
  return thickness + 1LL - static_cast<std::int64_t>(skipped);
}
