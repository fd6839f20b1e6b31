// SPDX-License-Identifier: Apache-2.0
// Scales a picture without smoothing, and looks only at the pixels that are shown.
#pragma once

#include <QPixmap>
#include <QSize>
#include <vector>

class QImage;

// Paints the same pixels as QPixmap::fromImage(frame).scaled(size, Qt::IgnoreAspectRatio,
// Qt::FastTransformation), which copies the whole frame and looks through its alpha first. That can
// wait, since nearest sampling takes pixels as they are. GUI thread.
class NearestSampling {
 public:
  // `frame` has the format QImage::Format_ARGB32 and is not null; `size` is at least 1 x 1.
  QPixmap scaled(const QImage& frame, const QSize& size);

 private:
  void follow(const QSize& from, const QSize& to);

  QSize fFrom, fTo;
  std::vector<int> fColumns, fRows;  // of the frame, for each column and row of the result
};
