// SPDX-License-Identifier: Apache-2.0
// A line about the picture on the stage.
#pragma once

#include <QLabel>
#include <cstdint>

#include "lookout/picture_meter.h"

// What the line says. A plain value.
struct StageStatus {
  Lookout::PictureReading picture;
  bool frozen = false;
  QSize size;                 // of the frame; empty without one
  QString encoding;           // how the pictures come; empty when not known
  std::uint64_t dropped = 0;  // came, and were not painted
  double scale = 1;           // device pixels for a pixel of the picture
};

// "Live · 29.9 fps · 33 ms · 640 x 480 · exact · 0 dropped · 150 %".
QString stageText(const StageStatus& status);

// GUI thread.
class StageLine : public QLabel {
  Q_OBJECT

 public:
  explicit StageLine(QWidget* parent = nullptr);

  void show(const StageStatus& status);
};
