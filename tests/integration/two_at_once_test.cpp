// SPDX-License-Identifier: Apache-2.0
// Two desktops on one robot, and two robots in one desktop.
#include <gtest/gtest.h>

#include <regex>

#include "window/robot_area.h"
#include "window_on_robots.h"

namespace {

// The view's pixels as they are shown.
QImage pictureOf(const Lookout::RobotSession& session) {
  for (QWidget* child : session.widget()->findChildren<QWidget*>())
    if (QString(child->metaObject()->className()) == "ViewImage")
      return child->grab(QRect(160, 120, 320, 240)).toImage();
  return {};
}

double differenceOf(const QImage& a, const QImage& b) {
  double sum = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
  return sum / (a.width() * a.height());
}

// N of "frames painted: N, ..." in each line.
std::vector<int> framesIn(const std::string& output) {
  std::vector<int> frames;
  const std::regex line("frames painted: ([0-9]+), fps shown: [0-9.]+, robot: [^\n]+");
  for (auto at = std::sregex_iterator(output.begin(), output.end(), line);
       at != std::sregex_iterator(); ++at)
    frames.push_back(std::stoi((*at)[1]));
  return frames;
}

Process lookout(const std::vector<Ky::KyAddress>& robots, const TestFolder& home) {
  std::vector<std::string> arguments = {"--play", "--report", "--quit-after", "4"};
  for (const auto& robot : robots) {
    arguments.push_back("--robot");
    arguments.push_back(robot.toString());
  }
  return Process(LOOKOUT, arguments,
                 {{"QT_QPA_PLATFORM", "offscreen"}, {"XDG_CONFIG_HOME", home.path().string()}});
}

TEST(TwoAtOnce, TwoRobotsInOneWindowShowTheirOwnPictures) {
  KyrobotProcess first;
  // The second one's active camera is told to look at the other scene.
  KyrobotProcess second({"--port", "0"});
  const auto helper = second.connect();
  helper->call("KyVideoDevice", "setActiveCamera", {1});
  helper->shutdown();

  WindowOnRobots desktop;
  Lookout::RobotSession* one = desktop.play(first.address());
  ASSERT_NE(one, nullptr);
  Lookout::RobotSession* other = desktop.play(second.address());
  ASSERT_NE(other, nullptr);
  ASSERT_TRUE(desktop.waitForFrames(*one, 3));
  EXPECT_GT(differenceOf(pictureOf(*one), pictureOf(*other)), 20);
}

TEST(TwoAtOnce, EndingOneRobotLeavesTheOtherPlaying) {
  KyrobotProcess first;
  KyrobotProcess second;
  WindowOnRobots desktop;
  ASSERT_NE(desktop.play(first.address()), nullptr);
  Lookout::RobotSession* other = desktop.play(second.address());
  ASSERT_NE(other, nullptr);
  first.process().signal(SIGKILL);
  auto& lost = desktop.window->robots().docks().front()->session();
  ASSERT_TRUE(waitUntil([&] { return lost.state() == Lookout::RobotSession::State::Silent; }));
  EXPECT_EQ(other->state(), Lookout::RobotSession::State::Connected);
  EXPECT_TRUE(desktop.waitForFrames(*other, 5));
}

TEST(TwoAtOnce, TwoDesktopsWatchOneRobot) {
  KyrobotProcess robot;
  TestFolder home;
  Process first = lookout({robot.address()}, home);
  Process second = lookout({robot.address()}, home);
  for (Process* desktop : {&first, &second}) {
    EXPECT_EQ(desktop->waitForExit(std::chrono::seconds(60)), 0) << desktop->errors();
    const std::vector<int> frames = framesIn(desktop->output());
    ASSERT_EQ(frames.size(), 1u) << desktop->output();
    EXPECT_GT(frames[0], 0);
  }
}

TEST(TwoAtOnce, OneDesktopLeavingDoesNotSwitchOffTheOther) {
  KyrobotProcess robot;
  const auto leaver = robot.connect();
  const auto stayer = robot.connect();
  const auto subscribe = [](const boost::shared_ptr<Ky::KyBroker>& broker) {
    return broker->call("KyVideoDevice", "subscribe", {"same", 1, 9, 30}).asString();
  };
  EXPECT_EQ(subscribe(leaver), "same");
  EXPECT_EQ(subscribe(stayer), "same");
  leaver->call("KyVideoDevice", "unsubscribe", {"same"});
  EXPECT_EQ(stayer->call("KyVideoDevice", "getImageRemote", {"same"})[0], Ky::KyValue(320));
  leaver->shutdown();
  EXPECT_EQ(stayer->call("KyVideoDevice", "getImageRemote", {"same"})[0], Ky::KyValue(320));
  stayer->shutdown();
}

}  // namespace
