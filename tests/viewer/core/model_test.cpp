// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/model.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "viewer/core/videorecordermodel.h"

TEST(Model, ShowsASmallGreyFrameBeforeTheFirstImage) {
  const Model model;
  EXPECT_EQ(model.fWidth, 160);
  EXPECT_EQ(model.fHeight, 120);
  EXPECT_EQ(model.fTimestamp, 0);
  EXPECT_TRUE(std::all_of(model.fImageData, model.fImageData + 4915200,
                          [](unsigned char byte) { return byte == 150; }));
}

TEST(Model, AsksForTheDefaultsOfTheCamera) {
  const Model model;
  EXPECT_EQ(model.fResolution, 0);
  EXPECT_EQ(model.fColorSpace, 9);
  EXPECT_EQ(model.fFps, 5);
  EXPECT_EQ(model.fCamera, 0);
  EXPECT_EQ(Model::fMaxFps, 30);
  for (const auto& angle : model.fAngles) EXPECT_EQ(angle, 0.0F);
}

TEST(Model, HasLocksOfItsOwnAndARecorder) {
  const Model model;
  EXPECT_TRUE(model.fObjects.empty());
  EXPECT_TRUE(model.fObjectsMutex);
  EXPECT_TRUE(model.fImageMutex);
  EXPECT_TRUE(model.fParamMutex);
  EXPECT_NE(model.fImageMutex, model.fParamMutex);
  ASSERT_TRUE(model.fVideoRecorder);
  EXPECT_FALSE(model.fVideoRecorder->fIsRecording);
}

TEST(Model, NamesItsResolutions) {
  EXPECT_EQ(Model::resolutionToString(0), "160 * 120");
  EXPECT_EQ(Model::resolutionToString(1), "320 * 240");
  EXPECT_EQ(Model::resolutionToString(2), "640 * 480");
  EXPECT_EQ(Model::resolutionToString(3), "1280 * 960");
}

TEST(Model, HasNoNameForAnotherResolution) {
  EXPECT_EQ(Model::resolutionToString(4), "ERROR");
  EXPECT_EQ(Model::resolutionToString(-1), "ERROR");
}

TEST(Model, FindsAResolutionByItsExactName) {
  EXPECT_EQ(Model::resolutionFromString("1280 * 960"), 3);
  EXPECT_EQ(Model::resolutionFromString("640 * 480"), 2);
  EXPECT_EQ(Model::resolutionFromString("320 * 240"), 1);
  EXPECT_EQ(Model::resolutionFromString("160 * 120"), 0);
  EXPECT_EQ(Model::resolutionFromString("640*480"), -1);
  EXPECT_EQ(Model::resolutionFromString(" 640 * 480"), -1);
  EXPECT_EQ(Model::resolutionFromString("ERROR"), -1);
  EXPECT_EQ(Model::resolutionFromString(""), -1);
}

TEST(Model, WatchesAKeyOnceHoweverOftenItIsAdded) {
  Model model;
  model.addObjectWatch("myObjects");
  ASSERT_EQ(model.fObjects.size(), 1U);
  const auto mutex = model.fObjects["myObjects"].fMutex;
  ASSERT_TRUE(mutex);
  model.fObjects["myObjects"].fObjects["0"] = displayObject();
  model.addObjectWatch("myObjects");
  EXPECT_EQ(model.fObjects.size(), 1U);
  EXPECT_EQ(model.fObjects["myObjects"].fMutex, mutex);
  EXPECT_EQ(model.fObjects["myObjects"].fObjects.size(), 1U);
}

TEST(Model, GivesEveryWatchAMutexOfItsOwn) {
  Model model;
  model.addObjectWatch("a");
  model.addObjectWatch("b");
  EXPECT_NE(model.fObjects["a"].fMutex, model.fObjects["b"].fMutex);
}

TEST(Model, EndsAWatchWithItsItems) {
  Model model;
  model.addObjectWatch("a");
  model.addObjectWatch("b");
  model.removeObjectWatch("a");
  EXPECT_EQ(model.fObjects.count("a"), 0U);
  EXPECT_EQ(model.fObjects.count("b"), 1U);
}

TEST(Model, IgnoresTheEndOfAWatchThatIsNone) {
  Model model;
  model.addObjectWatch("a");
  model.removeObjectWatch("b");
  EXPECT_EQ(model.fObjects.size(), 1U);
}

TEST(DisplayObject, IsABlackCircleInTheCornerAtFirst) {
  const displayObject object;
  EXPECT_EQ(object.x, 0.0);
  EXPECT_EQ(object.y, 0.0);
  EXPECT_EQ(object.diameter, 50);
  EXPECT_EQ(object.thickness, 2);
  EXPECT_EQ(object.shape, 0);
  EXPECT_EQ(object.colour, 0U);
  EXPECT_EQ(object.description, "");
}

TEST(DisplayObjectManager, KeepsItsMutexWhenItIsCleared) {
  EXPECT_FALSE(displayObjectManager().fMutex);
  displayObjectManager manager;
  manager.fMutex = Ky::KyMutex::createKyMutex();
  manager.fObjects["0"] = displayObject();
  manager.clear();
  EXPECT_TRUE(manager.fObjects.empty());
  EXPECT_TRUE(manager.fMutex);
}
