// SPDX-License-Identifier: Apache-2.0
// Programs of every kind draw over the picture of a running Lookout.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>

#include "window_on_robots.h"

namespace {

QWidget* pictureIn(QWidget& window) {
  for (QWidget* child : window.findChildren<QWidget*>())
    if (std::string(child->metaObject()->className()) == "ViewImage") return child;
  return nullptr;
}

class Figures : public testing::Test {
 protected:
  Figures() : fPlaying(fWindow.play(fRobot.address()) != nullptr) {}

  std::string address() { return fRobot.address().toString(); }

  Process ky(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--robot", address()});
    return Process(KY, arguments);
  }

  // In the shown picture, which leaves out the lines below it: they take a figure's colour. The
  // middle of all pixels of exactly this one; null when there are fewer than a figure has.
  QPointF centreOf(QRgb colour) {
    const QImage picture = pictureIn(*fWindow.window)->grab(QRect(160, 120, 320, 240)).toImage();
    QPointF sum;
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        if (picture.pixel(x, y) == colour) {
          sum += QPointF(x, y);
          ++count;
        }
    return count < 40 ? QPointF() : sum / count;
  }

  bool waitForFigure(QRgb colour) {
    return waitUntil([&] { return !centreOf(colour).isNull(); });
  }
  bool waitForNoFigure(QRgb colour) {
    return waitUntil([&] { return centreOf(colour).isNull(); });
  }

  KyrobotProcess fRobot;
  WindowOnRobots fWindow;
  bool fPlaying;
};

constexpr QRgb kMagenta = qRgb(255, 0, 255);

TEST_F(Figures, OfTheCommandLineStandWhereTheyWereDrawnAndGoAgain) {
  ASSERT_TRUE(fPlaying);
  Process draw = ky({"draw", "figures", "[[0.25, 0.75, 60, 2, 2, 255, 0, 255, \"\"]]"});
  ASSERT_EQ(draw.waitForExit(), 0) << draw.errors();
  ASSERT_TRUE(waitForFigure(kMagenta));
  const QPointF centre = centreOf(kMagenta);
  EXPECT_NEAR(centre.x(), 0.25 * 320, 2);
  EXPECT_NEAR(centre.y(), 0.75 * 240, 2);
  Process clear = ky({"memory", "set", "figures", "[]"});
  ASSERT_EQ(clear.waitForExit(), 0) << clear.errors();
  EXPECT_TRUE(waitForNoFigure(kMagenta));
}

TEST_F(Figures, OfAPythonProgramMove) {
  ASSERT_TRUE(fPlaying);
  const QRgb orange = qRgb(255, 160, 0);
  Process python("/usr/bin/python3", {EXAMPLES "draw_figures.py", address()});
  ASSERT_TRUE(waitForFigure(orange)) << python.errors();
  const QPointF first = centreOf(orange);
  EXPECT_TRUE(waitUntil([&] {
    const QPointF now = centreOf(orange);
    return !now.isNull() && (now - first).manhattanLength() > 20;
  }));
}

TEST_F(Figures, OfAModuleInCppAppearWhenItsMethodIsCalled) {
  ASSERT_TRUE(fPlaying);
  const QRgb green = qRgb(0, 255, 170);
  Process module(POINTER_MODULE, {address()});
  ASSERT_TRUE(module.waitForLine("serving Pointer")) << module.errors();
  Process point = ky({"call", "Pointer.pointAt", "0.5", "0.5", "\"here\""});
  ASSERT_EQ(point.waitForExit(), 0) << point.errors();
  EXPECT_TRUE(waitForFigure(green));
  Process rest = ky({"call", "Pointer.rest"});
  ASSERT_EQ(rest.waitForExit(), 0) << rest.errors();
  EXPECT_TRUE(waitForNoFigure(green));
}

TEST_F(Figures, WithoutAViewerTheCommandLineSaysWhatToDo) {
  KyrobotProcess robot;
  Process draw(KY, {"draw", "figures", "[]", "--robot", robot.address().toString()});
  EXPECT_EQ(draw.waitForExit(), 1);
  EXPECT_EQ(draw.errors(),
            "ky: the figures are written, but no viewer is connected to the robot to draw them: "
            "open one and draw again\n");
}

}  // namespace
