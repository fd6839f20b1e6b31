// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/frame_picture.h"

#include "viewer/acquisition/yuv_conversion.h"

namespace {

// Y0, U, Y1, V for every two pixels of a row. The last pixel of a row of odd width has half a pair
// only: it takes the chrominances of the pair before it.
YuvPixel yuv422At(const std::uint8_t* row, std::size_t column, std::size_t width) {
  const std::size_t pair = column / 2;
  const bool isWhole = pair < width / 2;
  if (!isWhole && pair == 0) return {row[0], 128, 128};
  const std::uint8_t* colours = row + (isWhole ? pair : pair - 1) * 4;
  return {row[pair * 4 + column % 2 * 2], colours[1], colours[3]};
}

// What the conversion leaves out.
void fillLastColumn(const Frame& frame, QImage& image) {
  for (int row = 0; row < frame.height; ++row) {
    const YuvPixel pixel = yuvAt(frame, {frame.width - 1, row});
    image.setPixel(frame.width - 1, row, yuv::pixel(pixel.y, pixel.u, pixel.v));
  }
}

}  // namespace

QImage pictureOf(const Frame& frame) {
  QImage image(frame.width, frame.height, QImage::Format_RGB32);
  if (image.isNull()) return image;
  const std::uint8_t* in = frame.pixels.data();
  std::uint8_t* out = image.bits();
  switch (frame.colorSpace) {
    case 0:
      yuv::convertGrey(in, frame.width, frame.height, out);
      break;
    case 10:
      yuv::convert444(in, frame.width, frame.height, out);
      break;
    default:
      yuv::convert422(in, frame.width, frame.height, out);
      if (frame.width % 2 != 0) fillLastColumn(frame, image);
      break;
  }
  return image;
}

YuvPixel yuvAt(const Frame& frame, QPoint at) {
  const auto row = static_cast<std::size_t>(at.y()) * static_cast<std::size_t>(frame.width);
  const auto column = static_cast<std::size_t>(at.x());
  const std::uint8_t* pixels = frame.pixels.data();
  switch (frame.colorSpace) {
    case 0:
      return {pixels[row + column], 128, 128};
    case 10: {
      const std::uint8_t* pixel = pixels + (row + column) * 3;
      return {pixel[0], pixel[1], pixel[2]};
    }
    default:
      return yuv422At(pixels + row * 2, column, static_cast<std::size_t>(frame.width));
  }
}
