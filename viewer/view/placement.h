// SPDX-License-Identifier: Apache-2.0
// Where the parts of the view stand for a frame of some size.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// All coordinates are the view's, in pixels.
struct Placement {
  bool scaled;        // whether the frame is scaled to pictureSize at all
  QSize pictureSize;  // at least 1 x 1
  QPoint origin;      // the picture's top-left corner
  QRect timestampLine;
  QRect dateLine;  // overlaps the timestamp's: the two lines stand 15 pixels apart
  QRect noteLine;
};

// For a frame of width x height pixels. A pure function. Frames 160, 320 and 640 pixels wide are
// shown 320 pixels wide, all others at a quarter of their size.
Placement placementFor(int width, int height);
