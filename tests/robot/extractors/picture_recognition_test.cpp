// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_recognition.h"

#include <gtest/gtest.h>

#include <opencv2/imgcodecs.hpp>

#include "ky/memory_proxy.h"
#include "robot/camera/field_of_view.h"
#include "robot/camera/generated_scene.h"
#include "robot/camera/scene_pictures.h"
#include "robot/in_process_robot.h"
#include "robot/services/memory.h"
#include "robot/test_folder.h"
#include "support/wait.h"

namespace robot {
namespace {

using Ky::KyValue;

constexpr std::int64_t kTime = 1700000000000000;
const KyValue kNothing = KyValue::array();

class RecognitionTest : public testing::Test {
 protected:
  RecognitionTest() {
    cv::setNumThreads(1);  // as the robot does
    cv::imwrite(fPictures / "harbour days.png", paintHarbour());
    cv::imwrite(fLogos / "periscope.png", paintEmblem());
  }

  KyValue picturesIn(const cv::Mat& picture) {
    PictureDetector detector("PictureDetected", pictureEntry, fPictures.path(), "KyTest");
    return detector.detect(Frame(picture, 3000004, 0)).at(0).value;
  }
  KyValue logosIn(const cv::Mat& picture) {
    PictureDetector detector("LogoDetected", logoEntry, fLogos.path(), "KyTest");
    return detector.detect(Frame(picture, 3000004, 0)).at(0).value;
  }

  const GeneratedScene fScene{0};
  TestFolder fPictures, fLogos;
};

SceneTruth truthOf(const GeneratedScene& scene, const std::string& name) {
  for (const SceneTruth& one : scene.truthAt(kTime))
    if (one.name == name) return one;
  throw std::runtime_error("the scene has no " + name);
}

TEST_F(RecognitionTest, WritesAPicturesLabelMatchesAndCorners) {
  const KyValue value = picturesIn(fScene.render(kTime));
  ASSERT_EQ(value.size(), 2u);
  EXPECT_EQ(value[0], KyValue::array({3, 4}));
  ASSERT_EQ(value[1].size(), 1u);
  const KyValue& entry = value[1][0];
  ASSERT_EQ(entry.size(), 4u);
  EXPECT_EQ(entry[0], KyValue::array({"harbour days"}));
  EXPECT_GE(entry[1].asInt(), 20);
  EXPECT_GT(entry[2].asFloat(), 0);
  EXPECT_LE(entry[2].asFloat(), 1);
  ASSERT_EQ(entry[3].size(), 4u);
  const SceneTruth truth = truthOf(fScene, "picture");
  const double left = truth.x - truth.width / 2, right = truth.x + truth.width / 2;
  const double top = truth.y - truth.height / 2, bottom = truth.y + truth.height / 2;
  const double corners[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NEAR(entry[3][i][0].asFloat(), alphaAt(corners[i][0]), -alphaOver(1.0 / 320)) << i;
    EXPECT_NEAR(entry[3][i][1].asFloat(), betaAt(corners[i][1]), -betaOver(1.0 / 240)) << i;
  }
}

TEST_F(RecognitionTest, WritesALogosMiddleSizeAndLabel) {
  const KyValue value = logosIn(fScene.render(kTime));
  ASSERT_EQ(value.size(), 2u);
  ASSERT_EQ(value[1].size(), 1u);
  const KyValue& shape = value[1][0][0];
  ASSERT_EQ(shape.size(), 5u);
  const SceneTruth truth = truthOf(fScene, "logo");
  EXPECT_NEAR(shape[1].asFloat(), alphaAt(truth.x), -alphaOver(1.0 / 320));
  EXPECT_NEAR(shape[2].asFloat(), betaAt(truth.y), -betaOver(1.0 / 240));
  EXPECT_NEAR(shape[3].asFloat(), alphaOver(truth.width), -alphaOver(2.0 / 320));
  EXPECT_NEAR(shape[4].asFloat(), betaOver(truth.height), -betaOver(2.0 / 240));
  EXPECT_EQ(value[1][0][1][0], KyValue("periscope"));
}

TEST_F(RecognitionTest, FindsNothingOnAGreyPicture) {
  const cv::Mat grey(480, 640, CV_8UC3, cv::Scalar::all(128));
  EXPECT_EQ(picturesIn(grey), kNothing);
  EXPECT_EQ(logosIn(grey), kNothing);
}

TEST_F(RecognitionTest, FindsNothingWhenItWasTaughtNothing) {
  std::filesystem::remove(fPictures / "harbour days.png");
  EXPECT_EQ(picturesIn(fScene.render(kTime)), kNothing);
}

TEST_F(RecognitionTest, FindsTwoPicturesAtOnce) {
  cv::imwrite(fPictures / "emblem.png", paintEmblem());
  const KyValue value = picturesIn(fScene.render(kTime));
  ASSERT_EQ(value[1].size(), 2u);
  EXPECT_EQ(value[1][0][0], KyValue::array({"emblem"}));
  EXPECT_EQ(value[1][1][0], KyValue::array({"harbour days"}));
}

// The module on a robot, with somebody who asks it.
class RecognitionModuleTest : public RecognitionTest {
 protected:
  RecognitionModuleTest()
      : fMemoryModule(Ky::KyModule::createModule<Memory>(fRobot.broker())),
        fModule(Ky::KyModule::createModule<PictureRecognition>(
            fRobot.broker(), InProcessRobot::cameras(), "KyVisionRecognition", "pictures",
            std::make_unique<PictureDetector>("PictureDetected", pictureEntry, fPictures.path(),
                                              "KyVisionRecognition"))) {}

  boost::shared_ptr<Ky::KyProxy> proxy() { return fDesktop->getProxy("KyVisionRecognition"); }
  std::size_t found() {
    const KyValue value = Ky::KyMemoryProxy(fDesktop).getData("PictureDetected");
    return value.size() < 2 ? 0 : value[1].size();
  }

  InProcessRobot fRobot;
  boost::shared_ptr<Memory> fMemoryModule;
  boost::shared_ptr<PictureRecognition> fModule;
  boost::shared_ptr<Ky::KyBroker> fDesktop = fRobot.connect();
};

TEST_F(RecognitionModuleTest, RecognisesWhatItIsTaughtWhileItLooks) {
  proxy()->callVoid("subscribe", std::string("Periscope"), 0, 0.5f);
  EXPECT_TRUE(waitUntil([&] { return found() == 1; }));
  cv::imwrite(fPictures / "emblem.png", paintEmblem());
  proxy()->callVoid("load");
  EXPECT_TRUE(waitUntil([&] { return found() == 2; }));
  std::filesystem::remove(fPictures / "harbour days.png");
  proxy()->callVoid("load");
  EXPECT_TRUE(waitUntil([&] { return found() == 1; }));
  proxy()->callVoid("unsubscribe", std::string("Periscope"));
  EXPECT_TRUE(waitUntil([&] { return found() == 0; }));
}

TEST_F(RecognitionModuleTest, LoadsOnceSomebodyIsSubscribed) {
  proxy()->callVoid("load");
  proxy()->callVoid("subscribe", std::string("Periscope"), 0, 0.5f);
  EXPECT_TRUE(waitUntil([&] { return found() == 1; }));
}

TEST_F(RecognitionModuleTest, SaysThatThereIsNoFolderToLoad) {
  std::filesystem::remove_all(fPictures.path());
  EXPECT_EQ(
      errorText([&] { proxy()->callVoid("load"); }),
      "there is no folder \"" + fPictures.path().string() + "\"; make it and put pictures into it");
}

}  // namespace
}  // namespace robot
