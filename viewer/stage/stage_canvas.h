// SPDX-License-Identifier: Apache-2.0
// Where the stage's picture is painted.
#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>

#include "viewer/core/frame.h"
#include "viewer/stage/viewport.h"

// GUI thread.
class StageCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit StageCanvas(QWidget* parent = nullptr);

  void show(FramePtr frame);
  std::uint64_t framesPainted() const { return fFramesPainted; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  FramePtr fFrame;
  QImage fPicture;
  Viewport fViewport;
  std::uint64_t fPaintedNumber = 0;
  std::uint64_t fFramesPainted = 0;
};
