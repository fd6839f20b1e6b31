// SPDX-License-Identifier: Apache-2.0
// Says what a pixel is.
#pragma once

#include <QLabel>

#include "viewer/stage/stage_scene.h"

// "312, 200   YUV 120 130 125   RGB 118 121 130", beside the colour. GUI thread.
class PixelLabel : public QLabel {
  Q_OBJECT

 public:
  explicit PixelLabel(QWidget* parent = nullptr);

  // Without a frame or a pixel in it, a hint what to do.
  void show(StageScene& scene, std::optional<QPoint> pixel);
};
