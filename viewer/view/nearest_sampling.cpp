// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/nearest_sampling.h"

#include <QImage>
#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr QRgb kAlpha = 0xff000000;

// Which of `from` pixels in a row Qt takes for each of `to`: it is shown a row of numbers.
std::vector<int> taken(int from, int to) {
  QImage numbers(from, 1, QImage::Format_RGB32);
  for (int i = 0; i < from; ++i) numbers.setPixel(i, 0, kAlpha | static_cast<QRgb>(i));
  numbers = numbers.scaled(to, 1, Qt::IgnoreAspectRatio, Qt::FastTransformation);
  std::vector<int> places;
  places.reserve(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i)
    places.push_back(std::min(static_cast<int>(numbers.pixel(i, 0) & ~kAlpha), from - 1));
  return places;
}

// Returns the bits that all of the pixels have.
QRgb sampleRow(const QRgb* in, const std::vector<int>& columns, QRgb* out) {
  QRgb common = ~QRgb{0};
  for (const int column : columns) {
    common &= in[column];
    *out++ = in[column];
  }
  return common;
}

}  // namespace

QPixmap NearestSampling::scaled(const QImage& frame, const QSize& size) {
  follow(frame.size(), size);
  QImage picture(size, frame.format());
  QRgb common = kAlpha;
  for (int y = 0; y < size.height(); ++y) {
    const uchar* row = frame.constScanLine(fRows[static_cast<std::size_t>(y)]);
    common &= sampleRow(reinterpret_cast<const QRgb*>(row), fColumns,
                        reinterpret_cast<QRgb*>(picture.scanLine(y)));
  }
  if (common == kAlpha) picture.reinterpretAsFormat(QImage::Format_RGB32);
  return QPixmap::fromImage(std::move(picture));
}

void NearestSampling::follow(const QSize& from, const QSize& to) {
  if (from == fFrom && to == fTo) return;
  fColumns = taken(from.width(), to.width());
  fRows = taken(from.height(), to.height());
  fFrom = from;
  fTo = to;
}
