// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/placement.h"

namespace {

struct Picture {
  bool scaled;
  QSize size;
  QPoint origin;
  int bottom;
};

Picture doubled(int width, int height) {
  return {true, {320, 2 * height}, {320 - width, 240 - height}, height + 240};
}

Picture unscaled(int width, int height) {
  return {false, {width, height}, {160, (480 - height) / 2}, (height + 480) / 2};
}

// A frame 640 pixels wide is halved and stands at the same place as the smaller ones.
Picture shrunk(int width, int height, float factor) {
  const float shownWidth = factor * static_cast<float>(width);
  const float shownHeight = factor * static_cast<float>(height);
  return {true,
          {static_cast<int>(shownWidth), static_cast<int>(shownHeight)},
          {static_cast<int>((640.0F - shownWidth) * 0.5F),
           static_cast<int>((480.0F - shownHeight) * 0.5F)},
          static_cast<int>((shownHeight + 480.0F) * 0.5F)};
}

Picture pictureFor(int width, int height) {
  switch (width) {
    case 160:
      return doubled(width, height);
    case 320:
      return unscaled(width, height);
    case 640:
      return shrunk(width, height, 0.5F);
    default:
      return shrunk(width, height, 0.25F);
  }
}

}  // namespace

Placement placementFor(int width, int height) {
  const Picture picture = pictureFor(width, height);
  const QSize size = picture.size.expandedTo({1, 1});
  const int left = picture.origin.x();
  const auto line = [&](int below, int lineHeight) {
    return QRect(left, picture.bottom + below, size.width(), lineHeight);
  };
  return {picture.scaled, size, picture.origin, line(0, 30), line(15, 30), line(55, 40)};
}
