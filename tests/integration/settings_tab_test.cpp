// SPDX-License-Identifier: Apache-2.0
// The settings tab on a running robot: what its controls do to the picture that is shown, and that
// it stays usable when the robot does not.
#include "settings_tab.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <csignal>

#include "tests/viewer/settings/panel_driver.h"

namespace {

struct Means {
  double red, green, blue;
};

// `each` gets every pixel of the picture.
template <class Each>
void forEachPixel(const QImage& picture, Each each) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) each(picture.pixel(x, y), x, y);
}

Means meansOf(const QImage& picture) {
  double red = 0, green = 0, blue = 0;
  forEachPixel(picture, [&](QRgb pixel, int, int) {
    red += qRed(pixel);
    green += qGreen(pixel);
    blue += qBlue(pixel);
  });
  const double count = std::max(1, picture.width() * picture.height());
  return {red / count, green / count, blue / count};
}

double light(const QImage& picture) {
  const Means means = meansOf(picture);
  return (means.red + means.green + means.blue) / 3;
}
double redness(const QImage& picture) {
  const Means means = meansOf(picture);
  return means.red - means.green;
}
double blueness(const QImage& picture) {
  const Means means = meansOf(picture);
  return means.blue - means.green;
}
double warmth(const QImage& picture) {
  const Means means = meansOf(picture);
  return means.red - means.blue;
}
double colourfulness(const QImage& picture) {
  double sum = 0;
  forEachPixel(picture, [&](QRgb pixel, int, int) {
    const int largest = std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)});
    sum += largest - std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
  });
  return sum / (picture.width() * picture.height());
}
double contrast(const QImage& picture) {
  const double mean = light(picture);
  double sum = 0;
  forEachPixel(picture, [&](QRgb pixel, int, int) { sum += std::abs(qGray(pixel) - mean); });
  return sum / (picture.width() * picture.height());
}

double differenceOf(const QImage& a, const QImage& b) {
  if (a.size() != b.size() || a.isNull()) return 1e9;
  double sum = 0;
  forEachPixel(a, [&](QRgb pixel, int x, int y) {
    const QRgb other = b.pixel(x, y);
    sum += std::abs(qRed(pixel) - qRed(other)) + std::abs(qGreen(pixel) - qGreen(other)) +
           std::abs(qBlue(pixel) - qBlue(other));
  });
  return sum / (a.width() * a.height());
}

struct Effect {
  const char* slider;
  double (*grows)(const QImage&);
};

void expectEffects(int model, const std::vector<Effect>& effects) {
  SettingsTab tab(model);
  tab.play();
  const QImage untouched = tab.nextPicture();
  for (const auto& [name, grows] : effects) {
    QSlider* slider = findSliderOf(tab.panel(), name);
    ASSERT_NE(slider, nullptr) << name;
    ASSERT_TRUE(slider->isEnabled()) << name;
    const int initial = slider->value();
    QTest::keyClick(slider, Qt::Key_Home);
    const double least = grows(tab.nextPicture());
    dragWithMouse(slider, (slider->minimum() + slider->maximum()) / 2);
    const double middle = grows(tab.nextPicture());
    QTest::keyClick(slider, Qt::Key_End);
    const double most = grows(tab.nextPicture());
    EXPECT_GT(middle, least + 2) << name;
    EXPECT_GT(most, middle + 2) << name;
    slider->setValue(initial);
    EXPECT_LT(differenceOf(tab.nextPicture(), untouched), 1) << name << " as it was at first";
  }
}

void setBox(SettingsTab& tab, const char* name, bool on) {
  QCheckBox* box = findBox(tab.panel(), name);
  if (box->isChecked() != on) click(box);
}

bool allChannelsAreEqual(const QImage& picture) {
  bool equal = !picture.isNull();
  forEachPixel(picture, [&](QRgb pixel, int, int) {
    equal = equal && qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel);
  });
  return equal;
}

int shownValue(SettingsTab& tab, const char* slider) {
  return findSliderOf(tab.panel(), slider)->value();
}

}  // namespace

TEST(SettingsTab, SlidersOfModelOneActOnTheShownPicture) {
  expectEffects(1, {{"Exposure", light},
                    {"Gain (steps of 1/16)", light},
                    {"Blue chroma", blueness},
                    {"Red chroma", redness},
                    {"Brightness", light},
                    {"Contrast", contrast},
                    {"Saturation", colourfulness}});
}

TEST(SettingsTab, SlidersOfModelTwoActOnTheShownPicture) {
  expectEffects(2, {{"Exposure", light},
                    {"Gain", light},
                    {"White balance", warmth},
                    {"Brightness", light},
                    {"Contrast", contrast},
                    {"Saturation", colourfulness}});
}

TEST(SettingsTab, HueTurnsTheColoursAndNotTheLight) {
  SettingsTab tab(1);
  tab.play();
  const QImage before = tab.nextPicture();
  QTest::keyClick(findSliderOf(tab.panel(), "Hue"), Qt::Key_End);
  const QImage turned = tab.nextPicture();
  EXPECT_GT(differenceOf(before, turned), 20);
  EXPECT_LT(warmth(before) * warmth(turned), 0) << "warm is cold";
  QTest::keyClick(findSliderOf(tab.panel(), "Hue"), Qt::Key_Home);
  EXPECT_LT(differenceOf(tab.nextPicture(), turned), 3) << "half a turn either way is the same";
}

TEST(SettingsTab, FlipsMirrorTheShownPicture) {
  SettingsTab tab(1);
  tab.play();
  const QImage before = tab.nextPicture();
  setBox(tab, "Horizontal Flip", true);
  EXPECT_LT(differenceOf(tab.nextPicture(), before.mirrored(true, false)), 3);
  setBox(tab, "Vertical Flip", true);
  EXPECT_LT(differenceOf(tab.nextPicture(), before.mirrored(true, true)), 3);
  setBox(tab, "Horizontal Flip", false);
  EXPECT_LT(differenceOf(tab.nextPicture(), before.mirrored(false, true)), 3);
  EXPECT_GT(differenceOf(tab.nextPicture(), before), 10);
}

TEST(SettingsTab, BlackAndWhiteHasEqualChannels) {
  SettingsTab tab(2);
  tab.play();
  EXPECT_FALSE(allChannelsAreEqual(tab.nextPicture()));
  setBox(tab, "black and white", true);
  EXPECT_TRUE(waitUntil([&] { return allChannelsAreEqual(tab.nextPicture()); }));
  setBox(tab, "black and white", false);
  EXPECT_TRUE(waitUntil([&] { return !allChannelsAreEqual(tab.nextPicture()); }));
}

TEST(SettingsTab, EveryResolutionIsShown) {
  SettingsTab tab(2);
  tab.play();
  auto* combo = tab.panel().findChild<QComboBox*>();
  for (const auto& [index, width] : {std::pair{1, 320}, {2, 640}, {3, 1280}}) {
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_TRUE(waitUntil([&, w = width] { return tab.model().fWidth == w; })) << index;
  }
  EXPECT_EQ(shownValue(tab, "Framerate up to"), 5);
  EXPECT_EQ(tab.model().fFps, 5);
}

TEST(SettingsTab, AutoExpositionFindsWhatTheSliderShowsAfterwards) {
  for (const int model : {1, 2}) {
    SettingsTab tab(model);
    tab.play();
    tab.button("Switch camera")->click();  // the town by night
    const double dark = light(tab.nextPicture());
    setBox(tab, "Auto exposition", true);
    EXPECT_FALSE(findSliderOf(tab.panel(), "Exposure")->isEnabled());
    ASSERT_TRUE(waitUntil([&] { return light(tab.nextPicture()) > dark * 1.5; })) << dark;
    setBox(tab, "Auto exposition", false);
    EXPECT_TRUE(findSliderOf(tab.panel(), "Exposure")->isEnabled());
    EXPECT_GT(shownValue(tab, "Exposure"), 300);
    EXPECT_GT(light(tab.nextPicture()), dark * 1.5) << "as it was found";
  }
}

TEST(SettingsTab, ExposureCorrectionCorrectsTheAutomaticMode) {
  SettingsTab tab(1);
  tab.play();
  setBox(tab, "Auto exposition", true);
  setBox(tab, "Auto gain", true);
  QSlider* correction = findSliderOf(tab.panel(), "Exposure correction");
  ASSERT_TRUE(correction->isEnabled());
  QTest::keyClick(correction, Qt::Key_Home);
  EXPECT_TRUE(waitUntil([&] { return light(tab.nextPicture()) < 75; }));
  QTest::keyClick(correction, Qt::Key_End);
  EXPECT_TRUE(waitUntil([&] { return light(tab.nextPicture()) > 150; }));
}

TEST(SettingsTab, AutoWhiteBalanceTakesATintAway) {
  SettingsTab tab(1);
  tab.play();
  QTest::keyClick(findSliderOf(tab.panel(), "Red chroma"), Qt::Key_End);
  const double red = redness(tab.nextPicture());
  setBox(tab, "Auto white balance", true);
  EXPECT_TRUE(waitUntil([&] { return redness(tab.nextPicture()) < red - 10; }));
}

TEST(SettingsTab, EachCameraHoldsItsOwnValues) {
  SettingsTab tab(1);
  tab.play();
  QTest::keyClick(findSliderOf(tab.panel(), "Brightness"), Qt::Key_End);
  setBox(tab, "Vertical Flip", true);
  const QImage first = tab.nextPicture();
  tab.button("Switch camera")->click();
  EXPECT_EQ(shownValue(tab, "Brightness"), 128);
  EXPECT_FALSE(findBox(tab.panel(), "Vertical Flip")->isChecked());
  EXPECT_GT(differenceOf(tab.nextPicture(), first), 50);
  QTest::keyClick(findSliderOf(tab.panel(), "Saturation"), Qt::Key_Home);
  tab.button("Switch camera")->click();
  EXPECT_EQ(shownValue(tab, "Brightness"), 255);
  EXPECT_EQ(shownValue(tab, "Saturation"), 128);
  EXPECT_TRUE(findBox(tab.panel(), "Vertical Flip")->isChecked());
  EXPECT_TRUE(waitUntil([&] { return differenceOf(tab.nextPicture(), first) < 1; }));
}

TEST(SettingsTab, ARobotOfEitherModelIsSetWithoutAnyError) {
  for (const int model : {1, 2}) {
    const LogCapture log;
    SettingsTab tab(model);
    for (int round = 0; round < 2; ++round) {
      for (QSlider* slider : tab.panel().findChildren<QSlider*>())
        for (const auto key : {Qt::Key_End, Qt::Key_Right, Qt::Key_Left})
          QTest::keyClick(slider, key);
      for (const char* name : {"Auto exposition", "Auto white balance", "Vertical Flip",
                               "Horizontal Flip", "black and white"})
        click(findBox(tab.panel(), name));
      tab.button("Switch camera")->click();
    }
    EXPECT_EQ(log.lines(), std::vector<std::string>{}) << model;
  }
}

TEST(SettingsTab, StandsGreyOnARobotWithoutAVideoDevice) {
  SettingsTab tab(1, {"--without", "KyVideoDevice"});
  for (const QSlider* slider : tab.panel().findChildren<QSlider*>())
    EXPECT_FALSE(slider->isEnabled());
  setBox(tab, "Auto exposition", true);
  tab.button("Switch camera")->click();
}

// A peer is lost after 2 s at the latest; the rest is for a machine that is busy itself.
constexpr qint64 kLongestStallMs = 3000;

TEST(SettingsTab, AFrozenRobotHoldsTheWindowUpNoLongerThanItTakesToKnowThatItIsLost) {
  SettingsTab tab(1);
  tab.play();
  ASSERT_FALSE(tab.nextPicture().isNull());
  tab.robot.process().signal(SIGSTOP);
  QElapsedTimer stall;
  stall.start();
  tab.button("Switch camera")->click();
  for (QSlider* slider : tab.panel().findChildren<QSlider*>())
    QTest::keyClick(slider, Qt::Key_Right);
  for (QCheckBox* box : tab.panel().findChildren<QCheckBox*>()) click(box);
  EXPECT_LT(stall.elapsed(), kLongestStallMs) << "all of them together";
}

TEST(SettingsTab, AKilledRobotLeavesAPanelThatCanBeUsed) {
  SettingsTab tab(2);
  tab.robot.process().signal(SIGKILL);
  tab.robot.process().waitForExit();
  tab.button("Switch camera")->click();
  for (QSlider* slider : tab.panel().findChildren<QSlider*>())
    QTest::keyClick(slider, Qt::Key_Right);
  for (QCheckBox* box : tab.panel().findChildren<QCheckBox*>()) click(box);
  EXPECT_FALSE(findSliderOf(tab.panel(), "Brightness")->isEnabled()) << "can't be read any more";
}
