// SPDX-License-Identifier: Apache-2.0
// What reaches the camera, in which order, and what the model keeps of it.
#include <gtest/gtest.h>

#include "tests/viewer/settings/camera_robot.h"

using Ky::KyValue;

namespace {

ScriptedModule::Answer failing(const std::string& text) {
  return [text](const KyValue::Array&) -> KyValue { throw Ky::KyError(text); };
}

class CameraParameters : public testing::Test {
 protected:
  // Nobody holds the lock any more.
  bool parametersAreFree() {
    const Ky::KyCriticalSectionWrite all(viewer.model().fParamMutex);
    return true;
  }

  CameraRobot viewer;
  Module& module = *viewer.module;
};

}  // namespace

TEST(CameraParametersWithoutCamera, FailQuietly) {
  ViewerOnRobot viewer(ViewerOnRobot::Camera::Missing);
  int value = 42;
  EXPECT_FALSE(viewer.module->setDefaultParameters());
  EXPECT_FALSE(viewer.module->setCurrentParameters());
  EXPECT_EQ(viewer.module->getCameraModelID(), 0);
  for (const int id : {0, 14, 15, 18, 20}) {
    EXPECT_FALSE(viewer.module->getCameraParam(id, value));
    EXPECT_FALSE(viewer.module->setCameraParam(id, 1));
  }
  EXPECT_EQ(value, 42);
  EXPECT_EQ(viewer.model().fFps, 5);
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CameraParameters, DefaultsGoToTheRobotOnly) {
  viewer.model().fFps = 20;
  viewer.model().fResolution = 2;
  viewer.model().fColorSpace = 0;
  EXPECT_TRUE(module.setDefaultParameters());
  EXPECT_EQ(viewer.takeCameraCalls(),
            (Lines{"setFrameRate(\"viewer_1\", 5)", "setResolution(\"viewer_1\", 0)",
                   "setColorSpace(\"viewer_1\", 9)"}));
  EXPECT_EQ(viewer.model().fFps, 20);
  EXPECT_EQ(viewer.model().fResolution, 2);
  EXPECT_EQ(viewer.model().fColorSpace, 0);
}

TEST_F(CameraParameters, DefaultsEndAtTheFirstRefusal) {
  viewer.device->answer("setColorSpace", false);
  EXPECT_FALSE(module.setDefaultParameters());
  EXPECT_EQ(viewer.takeCameraCalls().size(), 3u);
  viewer.device->answer("setResolution", false);
  EXPECT_FALSE(module.setDefaultParameters());
  EXPECT_EQ(viewer.takeCameraCalls().size(), 2u);
  viewer.device->answer("setFrameRate", false);
  EXPECT_FALSE(module.setDefaultParameters());
  EXPECT_EQ(viewer.takeCameraCalls(), Lines{"setFrameRate(\"viewer_1\", 5)"});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CameraParameters, CurrentOnesAreTheModels) {
  viewer.model().fFps = 12;
  viewer.model().fResolution = 2;
  viewer.model().fColorSpace = 0;
  viewer.model().fCamera = 1;
  EXPECT_TRUE(module.setCurrentParameters());
  EXPECT_EQ(viewer.takeCameraCalls(),
            (Lines{"setFrameRate(\"viewer_1\", 12)", "setResolution(\"viewer_1\", 2)",
                   "setColorSpace(\"viewer_1\", 0)", "setActiveCamera(1)"}));
  EXPECT_TRUE(parametersAreFree());
}

TEST_F(CameraParameters, CurrentOnesEndAtTheFirstRefusal) {
  std::size_t calls = 4;
  for (const char* refused :
       {"setActiveCamera", "setColorSpace", "setResolution", "setFrameRate"}) {
    viewer.device->answer(refused, false);
    EXPECT_FALSE(module.setCurrentParameters());
    EXPECT_EQ(viewer.takeCameraCalls().size(), calls--);
    EXPECT_TRUE(parametersAreFree());
  }
}

TEST_F(CameraParameters, OfTheModelAreReadWithoutTheRobot) {
  viewer.model().fFps = 17;
  viewer.model().fResolution = 3;
  viewer.model().fCamera = 1;
  int value = 0;
  EXPECT_TRUE(module.getCameraParam(15, value));
  EXPECT_EQ(value, 17);
  EXPECT_TRUE(module.getCameraParam(14, value));
  EXPECT_EQ(value, 3);
  EXPECT_TRUE(module.getCameraParam(18, value));
  EXPECT_EQ(value, 1);
  EXPECT_EQ(viewer.takeCameraCalls(), Lines{});
}

TEST_F(CameraParameters, AreReadAndWrittenForTheActiveCamera) {
  viewer.model().fCamera = 1;
  viewer.set(17, 300);
  int value = 0;
  EXPECT_TRUE(module.getCameraParam(17, value));
  EXPECT_EQ(value, 300);
  EXPECT_TRUE(module.getCameraParam(20, value));
  EXPECT_TRUE(module.setCameraParam(33, -40));
  EXPECT_EQ(viewer.takeCameraCalls(),
            (Lines{"getParam(17, 1)", "getParam(20, 1)", "setParam(33, -40, 1)"}));
}

TEST_F(CameraParameters, FrameRateAndResolutionAreBelievedEvenIfRefused) {
  viewer.device->answer("setFrameRate", false);
  viewer.device->answer("setResolution", false);
  EXPECT_FALSE(module.setCameraParam(15, 12));
  EXPECT_FALSE(module.setCameraParam(14, 2));
  int value = 0;
  EXPECT_TRUE(module.getCameraParam(15, value));
  EXPECT_EQ(value, 12);
  EXPECT_TRUE(module.getCameraParam(14, value));
  EXPECT_EQ(value, 2);
  EXPECT_EQ(viewer.takeCameraCalls(),
            (Lines{"setFrameRate(\"viewer_1\", 12)", "setResolution(\"viewer_1\", 2)"}));
  viewer.device->answer("setFrameRate", true);
  EXPECT_TRUE(module.setCameraParam(15, 3));
}

TEST_F(CameraParameters, ColourSpaceIsColourForEveryValueButZero) {
  EXPECT_TRUE(module.setCameraParam(20, 0));
  EXPECT_EQ(viewer.model().fColorSpace, 0);
  EXPECT_TRUE(module.setCameraParam(20, 2));
  EXPECT_EQ(viewer.model().fColorSpace, 9);
  viewer.device->answer("setColorSpace", false);
  EXPECT_FALSE(module.setCameraParam(20, -1));
  EXPECT_EQ(viewer.takeCameraCalls(),
            (Lines{"setColorSpace(\"viewer_1\", 0)", "setColorSpace(\"viewer_1\", 9)",
                   "setColorSpace(\"viewer_1\", 9)"}));
}

TEST_F(CameraParameters, ACameraIsActiveOnceTheRobotConfirmsIt) {
  EXPECT_TRUE(module.setCameraParam(18, 1));
  EXPECT_EQ(viewer.model().fCamera, 1);
  EXPECT_EQ(viewer.takeCameraCalls(), (Lines{"setParam(18, 1)", "getParam(18)"}));
  viewer.makeRefused(18);
  EXPECT_FALSE(module.setCameraParam(18, 0));
  EXPECT_EQ(viewer.model().fCamera, 1);
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(CameraParameters, ErrorsAreLoggedUnderTheMethodsName) {
  for (const char* method : {"setFrameRate", "setResolution", "setColorSpace", "getCameraModelID",
                             "getParam", "setParam"})
    viewer.device->answer(method, failing("broken"));
  int value = 42;
  EXPECT_FALSE(module.setDefaultParameters());
  EXPECT_FALSE(module.setCurrentParameters());
  EXPECT_EQ(module.getCameraModelID(), 0);
  EXPECT_FALSE(module.getCameraParam(0, value));
  EXPECT_FALSE(module.setCameraParam(0, 1));
  EXPECT_EQ(value, 42);
  EXPECT_EQ(viewer.log.lines(),
            (Lines{"error setDefaultParameters: broken", "error setCurrentParameters: broken",
                   "error getCameraModelID: broken", "error getCameraParam: broken",
                   "error setCameraParam: broken"}));
  EXPECT_TRUE(parametersAreFree());
}

TEST_F(CameraParameters, ErrorsOfMirroredOnesAreLoggedWithTheLockReleased) {
  for (const char* method : {"setFrameRate", "setResolution", "setColorSpace", "setParam"})
    viewer.device->answer(method, failing("broken"));
  for (const int id : {15, 14, 20, 18}) {
    EXPECT_FALSE(module.setCameraParam(id, 1));
    EXPECT_TRUE(parametersAreFree());
  }
  EXPECT_EQ(viewer.log.lines(), Lines(4, "error setCameraParam: broken"));
  EXPECT_EQ(viewer.model().fFps, 1);
  EXPECT_EQ(viewer.model().fResolution, 1);
  EXPECT_EQ(viewer.model().fCamera, 0);
}

TEST_F(CameraParameters, LetOtherReadersInWhileTheRobotIsAsked) {
  bool shared = false;
  viewer.device->answer("setFrameRate", [&](const KyValue::Array&) {
    // A reader gets in while the robot is asked; the camera thread is one.
    const Ky::KyCriticalSectionRead parameters(viewer.model().fParamMutex);
    shared = true;
    return KyValue(true);
  });
  EXPECT_TRUE(module.setCurrentParameters());
  EXPECT_TRUE(module.setCameraParam(15, 7));
  EXPECT_TRUE(shared);
}

TEST_F(CameraParameters, TellTheCamerasModel) {
  viewer.device->answer("getCameraModelID", 2);
  EXPECT_EQ(module.getCameraModelID(), 2);
}

TEST_F(CameraParameters, OfTheBallDetectorTravelAsTheyAre) {
  const auto detector = viewer.robot.add("KyBallDetection");
  detector->answer("setParam", KyValue());
  detector->answer("getParam", KyValue::array({10, 60}));
  KyValue value = KyValue::array({12, 42});
  EXPECT_TRUE(module.setUraballParam("radiusRange", value));
  EXPECT_TRUE(module.getUraballParam("radiusRange", value));
  EXPECT_EQ(value, KyValue::array({10, 60}));
  EXPECT_EQ(viewer.robot.calls(), (Lines{"KyBallDetection.setParam(\"radiusRange\", [12, 42])",
                                         "KyBallDetection.getParam(\"radiusRange\")"}));
}

TEST_F(CameraParameters, OfABrokenBallDetectorAreLogged) {
  const auto detector = viewer.robot.add("KyBallDetection");
  detector->answer("setParam", failing("no ball"));
  detector->answer("getParam", failing("no ball"));
  KyValue value = 5;
  EXPECT_FALSE(module.setUraballParam("CY", value));
  EXPECT_FALSE(module.getUraballParam("CY", value));
  EXPECT_EQ(value, KyValue(5));
  EXPECT_EQ(viewer.log.lines(),
            (Lines{"error setUraballParam: no ball", "error getUraballParam: no ball"}));
  viewer.robot.remove("KyBallDetection");
  EXPECT_FALSE(module.setUraballParam("CY", value));
  EXPECT_FALSE(module.getUraballParam("CY", value));
  EXPECT_EQ(viewer.log.lines().size(), 4u);
}
