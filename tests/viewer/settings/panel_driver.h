// SPDX-License-Identifier: Apache-2.0
// Finds and uses the controls of a panel as a user does.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QSlider>
#include <QTest>
#include <QWidget>
#include <map>
#include <string>
#include <vector>

inline QCheckBox* findBox(const QWidget& panel, const QString& text) {
  for (QCheckBox* box : panel.findChildren<QCheckBox*>())
    if (box->text() == text) return box;
  return nullptr;
}

inline void click(QCheckBox* box) {
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

inline QSlider* findSliderOf(const QWidget& panel, const QString& name) {
  for (QSlider* slider : panel.findChildren<QSlider*>())
    if (slider->accessibleName() == name) return slider;
  return nullptr;
}

// Drags the handle to a value and lets go of it.
inline void dragTo(QSlider* slider, int value) {
  slider->setSliderDown(true);
  slider->setSliderPosition(value);
  slider->setSliderDown(false);
}

// Drags the handle with the mouse to the pixel nearest to a value, in a few moves, and lets go.
void dragWithMouse(QSlider* slider, int value);

// What the user sees of a control.
struct ControlState {
  bool enabled = false;
  int value = 0;      // of a slider; of a box whether it is checked; of the combo box the index
  std::string label;  // a slider's value as text
  bool operator==(const ControlState&) const = default;
};
using PanelState = std::map<std::string, ControlState>;  // by name
PanelState stateOf(const QWidget& panel);

// The controls from top to bottom: names of sliders and boxes, "resolution" for the combo box.
std::vector<std::string> controlsOf(const QWidget& panel);

// Controls that are smaller than they need or that lie partly outside the panel, or over others.
std::vector<std::string> controlsCutIn(const QWidget& panel);
