// SPDX-License-Identifier: Apache-2.0
// What a stage shows, and how it is painted: on the screen, into a file, into a film.
#pragma once

#include <QImage>
#include <optional>

#include "viewer/core/frame.h"
#include "viewer/stage/picture_painter.h"
#include "viewer/stage/viewport.h"

class QPainter;

// GUI thread.
class StageScene {
 public:
  struct Look {
    bool overlays = true;
    bool grid = false;

    bool operator==(const Look&) const = default;
  };

  // The picture is converted when it is painted for the first time. Null: nothing is shown.
  void setFrame(FramePtr frame);
  const FramePtr& frame() const { return fFrame; }
  // Of the frame; null without one.
  const QImage& picture();

  Viewport& viewport() { return fViewport; }
  const Viewport& viewport() const { return fViewport; }
  Look& look() { return fLook; }

  // All of the view, in device pixels.
  void paint(QPainter& painter);
  // The view as it is, at its size in device pixels; null while it has none.
  QImage image(bool withOverlays);

 private:
  FramePtr fFrame;
  QImage fPicture;
  Viewport fViewport;
  Look fLook;
  PicturePainter fPainter;
};
