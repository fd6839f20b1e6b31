// SPDX-License-Identifier: Apache-2.0
// Everybody can read and reach every control: at any size of text, with the keyboard alone, and
// with assistive technology.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontInfo>

#include "tests/viewer/settings/camera_robot.h"
#include "tests/viewer/settings/panel_driver.h"
#include "viewer/settings/uraballsettings_widget.h"
#include "viewer/settings/videosettings_widget.h"

namespace {

// The desktop's size of text, for a while.
class TextSize {
 public:
  explicit TextSize(int points) {
    QFont font = fBefore;
    font.setPointSize(points);
    QApplication::setFont(font);
  }
  ~TextSize() { QApplication::setFont(fBefore); }

 private:
  const QFont fBefore = QApplication::font();
};

constexpr int kBall = 9;  // beside the camera models 0, 1 and 2: the ball detector's panel

class Panel : public testing::TestWithParam<int> {
 protected:
  Panel() : viewer(GetParam() == kBall ? 1 : GetParam()) {
    viewer.set(33, -120);  // the widest values
    viewer.set(17, 510);
    viewer.set(3, -180);
  }

  std::unique_ptr<QWidget> shown() {
    std::unique_ptr<QWidget> panel;
    if (GetParam() == kBall) {
      testing::internal::CaptureStdout();
      panel = std::make_unique<UraballSettingsWidget>(viewer.module, nullptr);
      testing::internal::GetCapturedStdout();
    } else {
      panel = std::make_unique<VideoSettingsWidget>(viewer.module, nullptr);
    }
    panel->show();
    QCoreApplication::processEvents();
    return panel;
  }

  CameraRobot viewer;
};

// From the first control on, with the Tab key, until it goes round.
Lines reachedWithTab(QWidget& panel) {
  Lines reached;
  if (panel.focusWidget() == nullptr) QTest::keyClick(&panel, Qt::Key_Tab);
  const QWidget* first = panel.focusWidget();
  for (QWidget* focus = panel.focusWidget(); focus != nullptr; focus = panel.focusWidget()) {
    const auto* box = qobject_cast<QCheckBox*>(focus);
    reached.push_back((box != nullptr ? box->text() : focus->accessibleName()).toStdString());
    QTest::keyClick(focus, Qt::Key_Tab);
    if (panel.focusWidget() == first || reached.size() > 50) break;
  }
  return reached;
}

// As it is read out: a combo box goes by its label.
std::string spokenName(QAccessibleInterface& control) {
  if (control.role() != QAccessible::ComboBox) return control.text(QAccessible::Name).toStdString();
  const auto labels = control.relations(QAccessible::Label);
  return labels.isEmpty() ? "" : labels.front().first->text(QAccessible::Name).toStdString();
}

Lines enabledControls(const QWidget& panel) {
  Lines enabled;
  const PanelState state = stateOf(panel);
  for (const std::string& name : controlsOf(panel))
    if (state.at(name).enabled) enabled.push_back(name);
  return enabled;
}

}  // namespace

TEST_P(Panel, CutsNoTextAtAnySize) {
  for (const int points : {6, 9, 11, 14, 18, 30}) {
    const TextSize size(points);
    const auto panel = shown();
    EXPECT_EQ(controlsCutIn(*panel), Lines{}) << points;
    EXPECT_EQ(panel->size(), QSize(400, 600));
    EXPECT_LE(QFontInfo(panel->font()).pixelSize(), QFontInfo(QApplication::font()).pixelSize());
    EXPECT_GE(QFontInfo(panel->font()).pixelSize(),
              std::min(12, QFontInfo(QApplication::font()).pixelSize()))
        << "small where that is not needed";
  }
}

TEST_P(Panel, FollowsTheDesktopsSizeOfTextWhenItIsShownAgain) {
  const auto panel = shown();
  const int before = QFontInfo(panel->font()).pixelSize();
  panel->hide();
  {
    const TextSize size(18);
    panel->show();
    QCoreApplication::processEvents();
    EXPECT_EQ(controlsCutIn(*panel), Lines{});
    panel->hide();
  }
  panel->show();
  EXPECT_EQ(QFontInfo(panel->font()).pixelSize(), before);
}

TEST_P(Panel, IsGoneThroughFromTopToBottomWithTheTabKey) {
  const auto panel = shown();
  panel->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
  EXPECT_EQ(reachedWithTab(*panel), enabledControls(*panel));
}

TEST_P(Panel, TellsAssistiveTechnologyEveryControlsName) {
  const auto panel = shown();
  Lines told;
  for (QWidget* widget : panel->findChildren<QWidget*>()) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(accessible, nullptr);
    const auto role = accessible->role();
    if (!widget->isVisible() || (role != QAccessible::Slider && role != QAccessible::CheckBox &&
                                 role != QAccessible::ComboBox))
      continue;
    told.push_back(spokenName(*accessible));
  }
  EXPECT_EQ(told, controlsOf(*panel));
}

INSTANTIATE_TEST_SUITE_P(Each, Panel, testing::Values(0, 1, 2, kBall));
