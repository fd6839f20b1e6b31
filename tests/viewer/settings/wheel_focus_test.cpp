// SPDX-License-Identifier: Apache-2.0
// The mouse wheel over the panels' controls, inside of what scrolls.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

#include "support/wait.h"
#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/uraballsettings_widget.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

// A panel in an area that is too low for it and scrolls, scrolled down a little.
template <class Panel>
class Scrolled {
 public:
  explicit Scrolled(CameraRobot& viewer)
      : panel(new Panel(viewer.module, nullptr)), fViewer(viewer) {
    fArea.setWidget(panel);
    fArea.resize(300, 300);
    fArea.show();
    fArea.activateWindow();
    fArea.setFocus();
    toMiddle();
    viewer.robot.takeCalls();
  }

  bool isActive() {
    return waitUntil([this] { return fArea.hasFocus(); });
  }
  void toMiddle() { fArea.verticalScrollBar()->setValue(kMiddle); }
  // Turns the wheel over a control, towards the user and back by one more; says what that did.
  struct Effect {
    Lines calls;
    bool scrolled;
    bool focused;
  };
  Effect turnWheelOver(QWidget* control) {
    fViewer.robot.takeCalls();
    toMiddle();
    for (const int clicks : {-1, 1, 1}) turn(control, clicks);
    return {fViewer.robot.takeCalls(), fArea.verticalScrollBar()->value() != kMiddle,
            control->hasFocus()};
  }
  QList<QWidget*> controls() {
    QList<QWidget*> result;
    for (QSlider* slider : panel->template findChildren<QSlider*>()) result << slider;
    for (QComboBox* combo : panel->template findChildren<QComboBox*>()) result << combo;
    for (QCheckBox* box : panel->template findChildren<QCheckBox*>()) result << box;
    return result;
  }

  Panel* const panel;  // the area's

 private:
  static constexpr int kMiddle = 150;

  static void turn(QWidget* target, int clicks) {
    const QPointF place = target->rect().center();
    QWheelEvent event(place, target->mapToGlobal(place), {}, {0, 120 * clicks}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only the window system's own wheel gives focus and goes on to parents.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(target, &event);
  }

  CameraRobot& fViewer;
  QScrollArea fArea;
};

class Wheel : public testing::Test {
 protected:
  Wheel() : viewer(2) {
    for (const int id : {0, 1, 2, 3, 6, 17}) viewer.set(id, 100);
  }
  CameraRobot viewer;
};

template <class Panel>
void expectNothingWithoutFocus(CameraRobot& viewer) {
  Scrolled<Panel> scrolled(viewer);
  ASSERT_TRUE(scrolled.isActive());
  const PanelState before = stateOf(*scrolled.panel);
  for (QWidget* control : scrolled.controls()) {
    const auto effect = scrolled.turnWheelOver(control);
    EXPECT_EQ(effect.calls, Lines{}) << control->metaObject()->className();
    EXPECT_TRUE(effect.scrolled) << control->metaObject()->className();
    EXPECT_FALSE(effect.focused);
    EXPECT_NE(control->focusPolicy(), Qt::WheelFocus) << control->metaObject()->className();
    EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus);
  }
  EXPECT_EQ(stateOf(*scrolled.panel), before);
}

}  // namespace

TEST_F(Wheel, WithoutFocusChangesNothingAndScrolls) {
  expectNothingWithoutFocus<VideoSettingsWidget>(viewer);
  expectNothingWithoutFocus<UraballSettingsWidget>(viewer);
}

TEST_F(Wheel, WithFocusMovesTheSlider) {
  Scrolled<VideoSettingsWidget> scrolled(viewer);
  ASSERT_TRUE(scrolled.isActive());
  QSlider* slider = findSliderOf(*scrolled.panel, "Brightness");
  slider->setFocus();
  const auto effect = scrolled.turnWheelOver(slider);
  ASSERT_EQ(effect.calls.size(), 3u);
  EXPECT_EQ(effect.calls.back(),
            "KyVideoDevice.setParam(0, " + std::to_string(slider->value()) + ", 0)");
  EXPECT_GT(slider->value(), 100);
  EXPECT_FALSE(effect.scrolled);
}

TEST_F(Wheel, WithFocusChoosesTheResolution) {
  Scrolled<VideoSettingsWidget> scrolled(viewer);
  ASSERT_TRUE(scrolled.isActive());
  auto* combo = scrolled.panel->findChild<QComboBox*>();
  combo->setFocus();
  const auto effect = scrolled.turnWheelOver(combo);
  EXPECT_EQ(effect.calls, (Lines{"KyVideoDevice.setResolution(\"viewer_1\", 1)",
                                 "KyVideoDevice.setResolution(\"viewer_1\", 0)"}));
  EXPECT_EQ(combo->currentIndex(), 0);
}
