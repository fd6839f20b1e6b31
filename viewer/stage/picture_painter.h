// SPDX-License-Identifier: Apache-2.0
// Paints a picture as large as its viewport wants it.
#pragma once

#include <QImage>
#include <QRect>

#include "viewer/stage/viewport.h"

class QPainter;

// Each pixel as it is where the viewport is exact; smoothly enlarged or averaged otherwise. Keeps
// what it painted last, so that the same again costs a copy. Thread-bound.
class PicturePainter {
 public:
  // Into the painter's device pixels 0, 0 .. viewport.view(). `picture` is as large as the viewport
  // says, and has no alpha. What the picture leaves free is not touched.
  void paint(QPainter& painter, const QImage& picture, const Viewport& viewport);

 private:
  struct Key {
    qint64 picture = 0;
    int quarters = 0;
    bool mirrored = false;
    QRect part;
    QSize size;

    bool operator==(const Key&) const = default;
  };

  void paintSmooth(QPainter& painter, const QImage& picture, const Viewport& viewport);

  Key fKey;
  QImage fScaled;
};
