// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/custom_slider.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLayout>
#include <QMetaMethod>
#include <QSlider>

#include "tests/viewer/settings/camera_robot.h"

namespace {

class Slider : public testing::Test {
 protected:
  std::unique_ptr<QCustomSlider> make(int parameter, int minimum, int maximum,
                                      bool activation = true, bool writeThrough = true) {
    return std::make_unique<QCustomSlider>(&panel, viewer.module, "Name", parameter, activation,
                                           minimum, maximum, writeThrough);
  }

  QLabel* label(int index) { return panel.findChildren<QLabel*>().at(index); }
  QString shownValue() { return label(1)->text(); }
  bool allEnabled(bool enabled) {
    for (QWidget* widget : panel.findChildren<QWidget*>())
      if (widget->isEnabled() != enabled) return false;
    return panel.findChildren<QWidget*>().size() == 3;
  }

  CameraRobot viewer;
  QWidget panel;
};

}  // namespace

TEST_F(Slider, BuildsARowOfNameValueAndSlider) {
  viewer.set(17, 300);
  const auto slider = make(17, 0, 510);
  QLayout* row = slider->init();
  ASSERT_NE(row, nullptr);
  const std::unique_ptr<QLayout> owner(row);
  ASSERT_EQ(row->count(), 3);
  EXPECT_EQ(row->itemAt(0)->widget(), label(0));
  EXPECT_EQ(row->itemAt(1)->widget(), label(1));
  EXPECT_EQ(row->itemAt(2)->widget(), slider->slider());
  EXPECT_EQ(label(0)->text(), "Name");
  EXPECT_EQ(label(0)->width(), 120);
  EXPECT_EQ(label(1)->width(), 30);
  EXPECT_EQ(shownValue(), "300");
  EXPECT_EQ(slider->slider()->minimum(), 0);
  EXPECT_EQ(slider->slider()->maximum(), 510);
  EXPECT_EQ(slider->slider()->value(), 300);
  EXPECT_EQ(slider->slider()->orientation(), Qt::Horizontal);
  EXPECT_EQ(slider->slider()->accessibleName(), "Name");
  EXPECT_TRUE(allEnabled(true));
  EXPECT_EQ(slider->getName(), "Name");
  EXPECT_EQ(viewer.takeCameraCalls(), Lines{"getParam(17, 0)"});
}

TEST_F(Slider, HasOneSlotAndNoSignals) {
  const QMetaObject& meta = QCustomSlider::staticMetaObject;
  ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
  EXPECT_EQ(meta.method(meta.methodOffset()).methodSignature(), "onChanged(int)");
  EXPECT_EQ(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
}

TEST_F(Slider, ShowsAValueOutOfRangeAsTheMinimum) {
  for (const int value : {600, -1, 511}) {
    viewer.set(17, value);
    const auto slider = make(17, 0, 510);
    const std::unique_ptr<QLayout> row(slider->init());
    EXPECT_EQ(slider->slider()->value(), 0);
    EXPECT_EQ(panel.findChildren<QLabel*>().last()->text(), "0");
  }
}

TEST_F(Slider, IsGreyedOutAtItsMinimumWhenTheValueCannotBeRead) {
  viewer.makeUnreadable(33);
  const auto slider = make(33, -120, -36);
  const std::unique_ptr<QLayout> row(slider->init());
  EXPECT_TRUE(allEnabled(false));
  EXPECT_EQ(shownValue(), "-120");
  slider->slider()->setValue(-50);
  EXPECT_EQ(viewer.takeWrites(), Lines{});
}

TEST_F(Slider, WritesWhatTheUserChooses) {
  const auto slider = make(0, 0, 255);
  const std::unique_ptr<QLayout> row(slider->init());
  slider->slider()->setValue(7);
  EXPECT_EQ(shownValue(), "7");
  EXPECT_TRUE(slider->setValue(200));
  EXPECT_EQ(shownValue(), "200");
  EXPECT_EQ(viewer.takeWrites(), (Lines{"setParam(0, 7, 0)", "setParam(0, 200, 0)"}));
}

TEST_F(Slider, WithoutActivationShowsButWritesNothing) {
  const auto slider = make(0, 0, 255, false);
  const std::unique_ptr<QLayout> row(slider->init());
  EXPECT_TRUE(allEnabled(false));
  slider->slider()->setValue(9);
  EXPECT_EQ(shownValue(), "9");
  EXPECT_EQ(viewer.takeWrites(), Lines{});
}

TEST_F(Slider, WithoutWriteThroughShowsButWritesNothing) {
  const auto slider = make(0, 0, 255, true, false);
  const std::unique_ptr<QLayout> row(slider->init());
  slider->slider()->setValue(9);
  EXPECT_EQ(shownValue(), "9");
  EXPECT_EQ(viewer.takeWrites(), Lines{});
}

TEST_F(Slider, BeforeItIsBuiltKeepsOnlyTheActivation) {
  const auto slider = make(0, 0, 255);
  EXPECT_FALSE(slider->initSlider(0, 1));
  EXPECT_FALSE(slider->initLabel(10));
  EXPECT_FALSE(slider->initValueLabel("a", 10));
  EXPECT_FALSE(slider->setValue(1));
  EXPECT_FALSE(slider->setActivation(false));
  EXPECT_EQ(slider->slider(), nullptr);
  slider->onChanged(5);
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  const std::unique_ptr<QLayout> row(slider->init());
  EXPECT_TRUE(allEnabled(false));
}

TEST_F(Slider, IsEnabledAndDisabledWithItsLabels) {
  const auto slider = make(0, 0, 255);
  const std::unique_ptr<QLayout> row(slider->init());
  EXPECT_TRUE(slider->setActivation(false));
  EXPECT_TRUE(allEnabled(false));
  EXPECT_TRUE(slider->setActivation(true));
  EXPECT_TRUE(allEnabled(true));
}

TEST_F(Slider, TakesANewRangeLabelsAndWidths) {
  const auto slider = make(0, 0, 255);
  const std::unique_ptr<QLayout> row(slider->init());
  EXPECT_TRUE(slider->initSlider(-5, 5));
  EXPECT_EQ(slider->slider()->minimum(), -5);
  EXPECT_EQ(slider->slider()->maximum(), 5);
  label(0)->setText("changed");
  EXPECT_TRUE(slider->initLabel(77));
  EXPECT_EQ(label(0)->text(), "Name");
  EXPECT_EQ(label(0)->width(), 77);
  EXPECT_TRUE(slider->initValueLabel("?", 44));
  EXPECT_EQ(shownValue(), "?");
  EXPECT_EQ(label(1)->width(), 44);
}

TEST_F(Slider, DoesNothingOnceTheModuleIsGone) {
  const auto built = make(0, 0, 255);
  const std::unique_ptr<QLayout> row(built->init());
  const auto late = make(0, 0, 255);
  viewer.dropModule();
  EXPECT_EQ(late->init(), nullptr);
  built->slider()->setValue(3);
  EXPECT_EQ(shownValue(), "3");
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}
