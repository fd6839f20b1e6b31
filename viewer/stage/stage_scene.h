// SPDX-License-Identifier: Apache-2.0
// What a stage shows, and how it is painted: on the screen, into a file, into a film.
#pragma once

#include <QFont>
#include <QImage>

#include "viewer/stage/overlays/moment.h"
#include "viewer/stage/overlays/stage_overlays.h"
#include "viewer/stage/picture_painter.h"
#include "viewer/stage/viewport.h"

class QPainter;

// GUI thread.
class StageScene {
 public:
  struct Look {
    bool overlays = true;
    bool grid = false;
    QFont font;             // of the overlays' labels
    double pixelRatio = 1;  // device pixels for a pixel of a widget
  };

  // The picture is converted when it is painted for the first time. Without a frame nothing is
  // shown.
  void show(Moment::Shown shown);
  const FramePtr& frame() const { return fShown.frame; }
  // Of the frame; null without one.
  const QImage& picture();

  Viewport& viewport() { return fViewport; }
  const Viewport& viewport() const { return fViewport; }
  Look& look() { return fLook; }

  // All of the view, in device pixels.
  void paint(QPainter& painter);
  // The same at its size in device pixels; null while it has none.
  QImage image(bool withOverlays);
  // What is seen, in a view of another size; cut off where that is smaller by a pixel only.
  QImage imageOf(QSize size);

 private:
  QImage painted(QSize size);
  void paintOverlays(QPainter& painter);

  Moment::Shown fShown;
  QImage fPicture;
  Viewport fViewport;
  Look fLook;
  PicturePainter fPainter;
  StageOverlays fOverlays;
};
