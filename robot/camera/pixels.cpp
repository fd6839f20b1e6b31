#include "robot/camera/pixels.h"

#include <algorithm>
#include <cstdint>
#include <opencv2/core/hal/hal.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "ky/error.h"
#include "robot/camera/image_format.h"

namespace robot {
namespace {

using Byte = std::uint8_t;

// The coefficients are in 1/256; each sum stays within 16 bits, so that the compiler makes SIMD
// code of the loops below.
inline Byte luminance(int b, int g, int r) {
  return static_cast<Byte>(
      static_cast<std::uint16_t>(static_cast<std::uint16_t>(25 * b + 129 * g + 66 * r + 128) >> 8) +
      16);
}
inline Byte chrominanceU(int b, int g, int r) {
  return static_cast<Byte>(
      static_cast<std::int16_t>(static_cast<std::int16_t>(112 * b - 74 * g - 38 * r + 128) >> 8) +
      128);
}
inline Byte chrominanceV(int b, int g, int r) {
  return static_cast<Byte>(
      static_cast<std::int16_t>(static_cast<std::int16_t>(-18 * b - 94 * g + 112 * r + 128) >> 8) +
      128);
}

// One row at a time, its channels apart, in buffers that stay in the processor's cache.
class RowConverter {
 public:
  explicit RowConverter(int width) : fWidth(width), fBuffers(static_cast<std::size_t>(width) * 9) {}

  void grey(const Byte* bgr, Byte* out) {
    split(bgr);
    luminances(out);
  }

  void yuv444(const Byte* bgr, Byte* out) {
    split(bgr);
    Byte *y = buffer(3), *u = buffer(4), *v = buffer(5);
    luminances(y);
    const Byte *b = buffer(0), *g = buffer(1), *r = buffer(2);
    for (int x = 0; x < fWidth; ++x) u[x] = chrominanceU(b[x], g[x], r[x]);
    for (int x = 0; x < fWidth; ++x) v[x] = chrominanceV(b[x], g[x], r[x]);
    const Byte* planes[] = {y, u, v};
    cv::hal::merge8u(planes, out, fWidth, 3);
  }

  void yuv422(const Byte* bgr, Byte* out) {
    split(bgr);
    Byte *y = buffer(3), *uv = buffer(4);
    luminances(y);
    Byte *b = buffer(5), *g = buffer(6), *r = buffer(7);
    means(buffer(0), b);
    means(buffer(1), g);
    means(buffer(2), r);
    Byte *u = buffer(8), *v = buffer(8) + fWidth / 2;
    for (int k = 0; k < fWidth / 2; ++k) u[k] = chrominanceU(b[k], g[k], r[k]);
    for (int k = 0; k < fWidth / 2; ++k) v[k] = chrominanceV(b[k], g[k], r[k]);
    const Byte* chrominances[] = {u, v};
    cv::hal::merge8u(chrominances, uv, fWidth / 2, 2);
    const Byte* planes[] = {y, uv};
    cv::hal::merge8u(planes, out, fWidth, 2);
  }

 private:
  Byte* buffer(int index) { return fBuffers.data() + static_cast<std::ptrdiff_t>(index) * fWidth; }

  void split(const Byte* bgr) {
    Byte* planes[] = {buffer(0), buffer(1), buffer(2)};
    cv::hal::split8u(bgr, planes, fWidth, 3);
  }

  void luminances(Byte* out) {
    const Byte *b = buffer(0), *g = buffer(1), *r = buffer(2);
    for (int x = 0; x < fWidth; ++x) out[x] = luminance(b[x], g[x], r[x]);
  }

  void means(const Byte* channel, Byte* out) const {
    for (int k = 0; k < fWidth / 2; ++k)
      out[k] = static_cast<Byte>((channel[2 * k] + channel[2 * k + 1] + 1) >> 1);
  }

  int fWidth;
  std::vector<Byte> fBuffers;
};

cv::Mat threeChannels(const cv::Mat& picture) {
  if (picture.type() == CV_8UC3) return picture;
  cv::Mat bgr;
  if (picture.type() == CV_8UC1)
    cv::cvtColor(picture, bgr, cv::COLOR_GRAY2BGR);
  else if (picture.type() == CV_8UC4)
    cv::cvtColor(picture, bgr, cv::COLOR_BGRA2BGR);
  else
    throw Ky::KyError("pictures of the kind " + cv::typeToString(picture.type()) +
                      " can't be used; 8-bit grey or colour is needed");
  return bgr;
}

}  // namespace

Ky::KyBinary pixelsOf(const cv::Mat& bgr, int colorSpace) {
  const std::size_t stride = static_cast<std::size_t>(bgr.cols) * layersOf(colorSpace);
  const std::size_t size = stride * bgr.rows;
  const std::shared_ptr<Byte[]> pixels(new Byte[size]);  // not cleared first
  RowConverter converter(bgr.cols);
  for (int row = 0; row < bgr.rows; ++row) {
    const Byte* in = bgr.ptr(row);
    Byte* out = pixels.get() + row * stride;
    if (colorSpace == kGrey)
      converter.grey(in, out);
    else if (colorSpace == kYuv422)
      converter.yuv422(in, out);
    else
      converter.yuv444(in, out);
  }
  return {pixels, pixels.get(), size};
}

cv::Mat fitToCanvas(const cv::Mat& picture) {
  const cv::Mat bgr = threeChannels(picture);
  const cv::Size largest = sizeOf(kLargestResolution);
  cv::Size canvas(std::max(bgr.cols, (bgr.rows * 4 + 2) / 3), 0);
  canvas.height = std::max(bgr.rows, (canvas.width * 3 + 2) / 4);
  if (canvas == bgr.size() && canvas.width <= largest.width) return bgr;

  double scale = 1;
  if (canvas.width > largest.width) {
    scale = static_cast<double>(largest.width) / canvas.width;
    canvas = largest;
  }
  const cv::Size inner(std::clamp(cvRound(bgr.cols * scale), 1, canvas.width),
                       std::clamp(cvRound(bgr.rows * scale), 1, canvas.height));
  cv::Mat result(canvas, CV_8UC3, cv::Scalar::all(0));
  const cv::Point corner((canvas.width - inner.width) / 2, (canvas.height - inner.height) / 2);
  cv::Mat middle = result(cv::Rect(corner, inner));
  cv::resize(bgr, middle, inner, 0, 0, cv::INTER_AREA);
  return result;
}

}  // namespace robot
