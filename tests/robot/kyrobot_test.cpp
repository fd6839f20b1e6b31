// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <set>

#include "in_process_robot.h"
#include "ky/memory_proxy.h"
#include "ky/video_device_proxy.h"
#include "kyrobot_process.h"
#include "robot/camera/scene_pictures.h"
#include "robot/robot.h"
#include "support/wait.h"

namespace {

std::string portOf(KyrobotProcess& robot) {
  return std::to_string(robot.address().port);
}

TEST(Kyrobot, SaysWhereItListens) {
  KyrobotProcess robot;
  const Ky::KyAddress address = robot.address();
  EXPECT_EQ(address.host, "127.0.0.1");
  EXPECT_GT(address.port, 0);
}

TEST(Kyrobot, StopsCleanlyWhenItIsTold) {
  for (const int number : {SIGINT, SIGTERM}) {
    KyrobotProcess robot;
    const std::string address = robot.address().toString();
    robot.process().signal(number);
    EXPECT_EQ(robot.process().waitForExit(), 0);
    EXPECT_EQ(robot.process().output(),
              "kyrobot: listening on " + address + "\nkyrobot: stopped\n");
  }
}

TEST(Kyrobot, StopsCleanlyWhileItIsWatched) {
  KyrobotProcess robot;
  const auto desktop = robot.connect();
  Ky::KyVideoDeviceProxy device(desktop);
  device.subscribe("me", 3, 9, 30);
  device.getImageRemote("me");
  robot.process().signal(SIGINT);
  EXPECT_EQ(robot.process().waitForExit(), 0);
  desktop->shutdown();
}

TEST(Kyrobot, SaysThatAPortIsTaken) {
  KyrobotProcess first;
  KyrobotProcess second({"--port", portOf(first)});
  EXPECT_EQ(second.process().waitForExit(), 1);
  EXPECT_NE(second.process().errors().find("port " + portOf(first) + " "), std::string::npos)
      << second.process().errors();
  EXPECT_EQ(second.process().output(), "");
}

TEST(Kyrobot, HasAllItsModules) {
  KyrobotProcess robot;
  const auto desktop = robot.connect();
  for (const std::string& module : robot::moduleNames())
    EXPECT_TRUE(desktop->isModulePresent(module)) << module;
  desktop->shutdown();
}

TEST(Kyrobot, CanDoWithoutAnyOfItsModules) {
  for (const std::string& left : robot::moduleNames()) {
    KyrobotProcess robot({"--port", "0", "--without", left});
    const auto desktop = robot.connect();
    for (const std::string& module : robot::moduleNames())
      EXPECT_EQ(desktop->isModulePresent(module), module != left) << module;
    desktop->shutdown();
    robot.process().signal(SIGTERM);
    EXPECT_EQ(robot.process().waitForExit(), 0);
  }
}

TEST(Kyrobot, LeavesOutTheModulesThatItIsToldTo) {
  KyrobotProcess robot({"--port", "0", "--without", "KyMemory", "--without", "KyVideoDevice"});
  const auto desktop = robot.connect();
  EXPECT_FALSE(desktop->isModulePresent("KyMemory"));
  EXPECT_FALSE(desktop->isModulePresent("KyVideoDevice"));
  EXPECT_TRUE(desktop->isModulePresent("KyLauncher"));
  desktop->shutdown();
}

TEST(Kyrobot, ShowsTwoDesktopsWhatEachAskedFor) {
  KyrobotProcess robot;
  const auto one = robot.connect(), two = robot.connect();
  Ky::KyVideoDeviceProxy first(one), second(two);
  first.subscribe("Periscope", 3, 9, 30);
  second.subscribe("Periscope", 1, 10, 5);
  EXPECT_EQ(first.getImageRemote("Periscope")[6].asBinary().size(), 1280u * 960 * 2);
  EXPECT_EQ(second.getImageRemote("Periscope")[6].asBinary().size(), 320u * 240 * 3);
  one->shutdown();
  EXPECT_EQ(second.getImageRemote("Periscope")[0].asInt(), 320) << "the other one stays";
  two->shutdown();
}

TEST(Kyrobot, ForgetsADesktopThatLeaves) {
  KyrobotProcess robot;
  const auto one = robot.connect(), two = robot.connect();
  Ky::KyVideoDeviceProxy(one).subscribe("", 0, 9, 5);
  one->shutdown();
  Ky::KyVideoDeviceProxy second(two);
  EXPECT_TRUE(waitUntil([&] {
    const std::string name = second.subscribe("", 0, 9, 5);
    second.unsubscribe(name);
    return name == "viewer_1";
  })) << "the name is free again";
  two->shutdown();
}

TEST(Kyrobot, ShowsTheSourcesThatItIsGiven) {
  const TestFolder folder;
  cv::imwrite(folder / "white.png", cv::Mat(96, 128, CV_8UC3, cv::Scalar::all(255)));
  KyrobotProcess robot({"--port", "0", "--camera", "1=" + folder.path().string(), "--camera",
                        "0=" + (folder / "white.png")});
  const auto desktop = robot.connect();
  Ky::KyVideoDeviceProxy device(desktop);
  device.subscribe("me", 0, 0, 5);
  for (const int camera : {0, 1}) {
    device.setActiveCamera(camera);
    EXPECT_EQ(device.getImageRemote("me")[6].asBinary().data()[100], 235);
    EXPECT_EQ(device.getImageRemote("me")[7].asInt(), camera);
  }
  desktop->shutdown();
}

// The labels of the pictures that the robot has recognised by now.
std::set<std::string> recognised(const boost::shared_ptr<Ky::KyBroker>& desktop) {
  std::set<std::string> labels;
  const Ky::KyValue value = Ky::KyMemoryProxy(desktop).getData("PictureDetected");
  if (value.size() == 2)
    for (const Ky::KyValue& entry : value[1].asArray()) labels.insert(entry[0][0].asString());
  return labels;
}

TEST(Kyrobot, KnowsThePictureOfItsSceneFromTheStart) {
  KyrobotProcess robot;
  const auto desktop = robot.connect();
  desktop->getProxy("KyVisionRecognition")->callVoid("subscribe", "me", 0, 0.5f);
  EXPECT_TRUE(
      waitUntil([&] { return recognised(desktop) == std::set<std::string>{"harbour days"}; }));
  desktop->shutdown();
}

TEST(Kyrobot, RecognisesThePicturesOfTheFolderThatItIsGiven) {
  const TestFolder folder;
  cv::imwrite(folder / "badge.png", robot::paintEmblem());
  KyrobotProcess robot({"--port", "0", "--pictures", folder.path().string()});
  const auto desktop = robot.connect();
  desktop->getProxy("KyVisionRecognition")->callVoid("subscribe", "me", 0, 0.5f);
  EXPECT_TRUE(waitUntil([&] { return recognised(desktop) == std::set<std::string>{"badge"}; }));
  desktop->shutdown();
}

TEST(Kyrobot, DoesWithoutAModuleWhoseFolderCannotBeMade) {
  const TestFolder folder;
  std::ofstream(folder / "file") << "in the way";
  KyrobotProcess robot({"--port", "0", "--logos", folder / "file"});
  const auto desktop = robot.connect();
  EXPECT_FALSE(desktop->isModulePresent("KyLogoDetection"));
  EXPECT_TRUE(desktop->isModulePresent("KyVisionRecognition"));
  EXPECT_NE(robot.process().errors().find("this robot has no KyLogoDetection: the folder \"" +
                                          folder / "file" + "\" can't be made"),
            std::string::npos)
      << robot.process().errors();
  desktop->shutdown();
}

TEST(Kyrobot, HasTheCameraModelThatItIsGiven) {
  KyrobotProcess robot({"--port", "0", "--camera-model", "2"});
  const auto desktop = robot.connect();
  EXPECT_EQ(Ky::KyVideoDeviceProxy(desktop).getCameraModelID(), 2);
  desktop->shutdown();
}

TEST(Kyrobot, EncodesWithTheEncoderThatItIsGiven) {
  KyrobotProcess robot({"--port", "0", "--encoder", "libx264"});
  const auto desktop = robot.connect();
  desktop->setPreference("KyVideoDevice.pictures", "saving");
  Ky::KyVideoDeviceProxy device(desktop);
  device.subscribe("me", 2, 9, 30);
  EXPECT_EQ(device.getImageRemote("me")[0].asInt(), 640);
  EXPECT_EQ(desktop->statistics().streams, std::vector<std::string>{"H.264, 0.8 Mbit/s"});
  desktop->shutdown();
}

TEST(Kyrobot, MakesItsHome) {
  const TestFolder folder;
  KyrobotProcess robot({"--port", "0", "--home", folder / "some/where"});
  robot.address();
  EXPECT_TRUE(std::filesystem::is_directory(folder / "some/where"));
  KyrobotProcess other;
  other.address();
  EXPECT_TRUE(std::filesystem::is_directory(other.folder() / "kyrobot")) << "by default";
}

}  // namespace
