// SPDX-License-Identifier: Apache-2.0
// What the window says of robots whose pictures run, and of one whose picture stands still.
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <filesystem>

#include "robot/test_film.h"
#include "robots/lost_veil.h"
#include "window/robot_area.h"
#include "window_on_robots.h"

namespace {

using Lookout::PictureState;

// A robot that plays a short film over and over.
class FilmRobot {
 public:
  explicit FilmRobot(double fps) : fFilm(fFolder / "film.avi") {
    writeFilm(fFilm, 6, fps);
    fRobot = std::make_unique<KyrobotProcess>(
        std::vector<std::string>{"--port", "0", "--camera", "0=" + fFilm});
  }
  Ky::KyAddress address() { return fRobot->address(); }
  const std::string& film() const { return fFilm; }
  void deleteFilm() { std::filesystem::remove(fFilm); }

 private:
  TestFolder fFolder;
  std::string fFilm;
  std::unique_ptr<KyrobotProcess> fRobot;
};

double rateIn(const Lookout::RobotDock& dock) {
  const QString line = dock.findChild<Lookout::StatusLine*>()->text();
  const auto found = QRegularExpression("Live . ([0-9.]+) fps").match(line);
  return found.hasMatch() ? found.captured(1).toDouble() : 0;
}

TEST(StandingPicture, IsVeiledWhenTheFilmBehindTheCameraIsGone) {
  FilmRobot robot(10);
  WindowOnRobots desktop;
  Lookout::RobotSession* session = desktop.play(robot.address());
  ASSERT_NE(session, nullptr);
  const Lookout::RobotDock* dock = desktop.window->robots().docks().front();
  ASSERT_TRUE(waitUntil([&] { return rateIn(*dock) > 3; }));

  robot.deleteFilm();
  ASSERT_TRUE(waitUntil([&] { return dock->status().picture.state == PictureState::Stalled; }));
  EXPECT_EQ(dock->status().picture.framesPerSecond, 0);
  const auto* veil = session->widget()->findChild<Lookout::LostVeil*>();
  ASSERT_NE(veil, nullptr);
  EXPECT_TRUE(veil->isVisible());
  EXPECT_TRUE(veil->text().startsWith("No new picture for ")) << veil->text().toStdString();
  EXPECT_EQ(QString(veil->parentWidget()->metaObject()->className()), "ViewImage");
  EXPECT_EQ(veil->visibleRegion().boundingRect().right(), veil->rect().right())
      << "no word of it is cut off";
  const QString why =
      QString::fromStdString("camera 0 has no picture: \"" + robot.film() + "\" is gone");
  EXPECT_TRUE(waitUntil([&] { return veil->text().endsWith(": " + why); }))
      << veil->text().toStdString();
}

TEST(StandingPicture, EachOfTwoRobotsHasItsOwnRate) {
  FilmRobot slow(2);
  KyrobotProcess fast;
  WindowOnRobots desktop;
  ASSERT_NE(desktop.play(slow.address()), nullptr);
  ASSERT_NE(desktop.play(fast.address()), nullptr);
  const auto& docks = desktop.window->robots().docks();
  EXPECT_TRUE(waitUntil([&] {
    return rateIn(*docks[0]) > 1.5 && rateIn(*docks[0]) < 2.5 && rateIn(*docks[1]) > 4 &&
           rateIn(*docks[1]) < 6;
  })) << rateIn(*docks[0])
      << ", " << rateIn(*docks[1]);
}

TEST(StandingPicture, IsNotCalledRunningBeforePlayAndAfterPause) {
  KyrobotProcess robot;
  WindowOnRobots desktop;
  const Lookout::RobotDock* dock = desktop.window->connectTo(robot.address());
  const auto* line = dock->findChild<Lookout::StatusLine*>();
  EXPECT_TRUE(waitUntil([&] { return line->text().contains("Not playing"); }));
  EXPECT_FALSE(line->text().contains("fps"));
  dock->session().setPlaying(true);
  EXPECT_TRUE(waitUntil([&] { return rateIn(*dock) > 0; }));
  dock->session().setPlaying(false);
  EXPECT_TRUE(waitUntil([&] { return line->text().contains("Paused"); }));
  EXPECT_FALSE(line->text().contains("fps"));
}

}  // namespace
