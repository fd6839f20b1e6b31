// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/text_size.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFontInfo>
#include <QGroupBox>
#include <QLayout>
#include <algorithm>

namespace {

constexpr int kSmallest = 8;  // pixels: below that nobody can read it

// Makes its layouts know the font of now.
void measureAgain(QWidget& panel) {
  // A combo box would keep the least size of its first font.
  QEvent change(QEvent::StyleChange);
  for (QComboBox* combo : panel.findChildren<QComboBox*>())
    QCoreApplication::sendEvent(combo, &change);
  for (QWidget* group : panel.findChildren<QGroupBox*>()) group->layout()->activate();
}

bool isTooSmall(QWidget& panel) {
  measureAgain(panel);
  const QSize needed = panel.layout()->totalMinimumSize();
  return needed.width() > panel.width() || needed.height() > panel.height();
}

// All alike, so that the sliders stand one under the other.
void fitLabels(const QCustomSliders& sliders) {
  int name = 0;
  int value = 0;
  for (const auto& slider : sliders) {
    if (slider->slider() == nullptr) continue;
    name = std::max(name, slider->neededNameWidth());
    value = std::max(value, slider->neededValueWidth());
  }
  for (const auto& slider : sliders)
    if (slider->slider() != nullptr) slider->setLabelWidths(name, value);
}

}  // namespace

void fitTexts(QWidget& panel, const QCustomSliders& sliders) {
  panel.setFont(QFont());  // the desktop's, which may have changed
  QFont font = panel.font();
  for (int pixels = QFontInfo(font).pixelSize();; --pixels) {
    fitLabels(sliders);
    if (pixels <= kSmallest || !isTooSmall(panel)) return;
    font.setPixelSize(pixels - 1);
    panel.setFont(font);
  }
}
