// SPDX-License-Identifier: Apache-2.0
// What the viewer holds is what the robot's camera saw: over TCP, from another process.
#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include "robot/camera/generated_scene.h"
#include "robot/kyrobot_process.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "viewer/core/model.h"
#include "viewer/core/module.h"

namespace {

struct Format {
  int resolution;
  int colorSpace;
  int width;  // of the frame in the model
  int height;
};

class LivePicture : public testing::TestWithParam<Format> {
 protected:
  LivePicture() : broker(robot.connect()), module(Ky::KyModule::createModule<Module>(broker)) {
    model().fResolution = GetParam().resolution;
    model().fColorSpace = GetParam().colorSpace;
    module->askForVIM();
  }
  ~LivePicture() override {
    module.reset();
    broker->shutdown();
  }

  Model& model() { return *module->model(); }

  KyrobotProcess robot;
  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<Module> module;
};

// The blue and red channels as the camera saw them; green is mixed by the viewer in its own way.
double differenceOf(const cv::Mat& shown, const cv::Mat& scene, int channel) {
  cv::Mat expected;
  cv::resize(scene, expected, shown.size(), 0, 0, cv::INTER_AREA);
  cv::Mat a;
  cv::Mat b;
  cv::extractChannel(shown, a, channel);
  cv::extractChannel(expected, b, channel);
  cv::Mat difference;
  cv::absdiff(a, b, difference);
  return cv::mean(difference)[0];
}

TEST_P(LivePicture, ShowsTheSceneAtItsTimeInEveryFormat) {
  LogCapture log;
  module->getNext();
  EXPECT_TRUE(log.lines().empty()) << log.lines().front();
  ASSERT_EQ(model().fWidth, GetParam().width);
  ASSERT_EQ(model().fHeight, GetParam().height);
  const cv::Mat shown(model().fHeight, model().fWidth, CV_8UC4, model().fImageData);
  const cv::Mat scene = robot::GeneratedScene(0).render(model().fTimestamp);
  if (GetParam().colorSpace == 0) {
    cv::Mat channels[4];
    cv::split(shown, channels);
    EXPECT_EQ(cv::norm(channels[0], channels[1], cv::NORM_INF), 0);
    EXPECT_EQ(cv::norm(channels[0], channels[2], cv::NORM_INF), 0);
    cv::Mat grey;
    cv::cvtColor(scene, grey, cv::COLOR_BGR2GRAY);
    EXPECT_LT(differenceOf(channels[0], grey, 0), 4);
    return;
  }
  // Enlarging the smallest picture costs sharpness.
  const double limit = GetParam().resolution == 0 ? 8 : 4;
  EXPECT_LT(differenceOf(shown, scene, 0), limit);
  EXPECT_LT(differenceOf(shown, scene, 2), limit);
}

TEST_P(LivePicture, GoesOnWithEveryFetch) {
  module->getNext();
  const std::int64_t first = model().fTimestamp;
  EXPECT_TRUE(waitUntil([&] {
    module->getNext();
    return model().fTimestamp > first;
  }));
}

INSTANTIATE_TEST_SUITE_P(Formats, LivePicture,
                         testing::Values(Format{0, 9, 320, 240}, Format{1, 9, 320, 240},
                                         Format{2, 9, 640, 480}, Format{3, 9, 1280, 960},
                                         Format{0, 0, 160, 120}, Format{1, 0, 320, 240},
                                         Format{2, 0, 640, 480}, Format{3, 0, 1280, 960},
                                         Format{0, 10, 160, 120}, Format{1, 10, 320, 240},
                                         Format{2, 10, 640, 480}, Format{3, 10, 1280, 960}));

}  // namespace
