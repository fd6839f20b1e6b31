// SPDX-License-Identifier: Apache-2.0
// Pictures for tests of the stage.
#pragma once

#include <QPoint>
#include <QSize>
#include <vector>

#include "viewer/core/frame.h"

// YUV 4:4:4 of one colour.
inline Frame plainFrame(QSize size, std::uint8_t y, std::uint8_t u = 128, std::uint8_t v = 128) {
  std::vector<std::uint8_t> pixels;
  for (int i = 0; i < size.width() * size.height(); ++i) pixels.insert(pixels.end(), {y, u, v});
  Frame frame;
  frame.pixels = Ky::KyBinary(std::move(pixels));
  frame.width = size.width();
  frame.height = size.height();
  frame.colorSpace = 10;
  frame.timestamp = 1'331'040'000'000'000;
  return frame;
}

// Luminance alone: a pixel whose place is told by its brightness, as far as 256 levels go.
inline Frame markedFrame(QSize size) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < size.height(); ++y)
    for (int x = 0; x < size.width(); ++x)
      pixels.push_back(static_cast<std::uint8_t>(16 + (x * 7 + y * 31) % 200));
  Frame frame;
  frame.pixels = Ky::KyBinary(std::move(pixels));
  frame.width = size.width();
  frame.height = size.height();
  frame.colorSpace = 0;
  return frame;
}

inline FramePtr shared(Frame frame) {
  return std::make_shared<const Frame>(std::move(frame));
}
