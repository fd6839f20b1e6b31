// SPDX-License-Identifier: Apache-2.0
// What the robot's detectors find is drawn where it is: over TCP, in the painted picture.
#include <gtest/gtest.h>

#include "drawn_scene.h"
#include "robot/camera/scene_targets.h"
#include "robot/extractors/samples.h"
#include "support/log_capture.h"

namespace {

struct Kind {
  const char* box;    // to tick
  const char* key;    // of the robot's memory
  const char* thing;  // in the scene
  std::string description;
  bool isAsLargeAsItsThing = false;
  QPointF part = {0.5, 0.5};  // where the figure belongs, as fractions of the thing
};

const Kind kKinds[] = {
    {"mark detection", "LandmarkDetected", "signboard",
     "mark " + std::to_string(robot::kSignboardNumber), true},
    {"ball detection", "BallDetected", "ball", "ball 1", true},
    {"duck detection", "DuckDetected", "duck", "duck head  1", false, {106.0 / 162, 44.0 / 142}},
    {"face detection", "FaceDetected", "face", "face 0"},
    {"logo detection", "LogoDetected", "logo", "logo 0"},
    {"vision recognition", "PictureDetected", "picture", "harbour days"},
};

constexpr double kNear = 3;  // pixels of the shown picture

class DrawnDetections : public testing::TestWithParam<int> {};

TEST_P(DrawnDetections, StandWhereTheThingsAreAtEveryResolution) {
  DrawnScene scene;
  for (const Kind& kind : kKinds) scene.tick(kind.box);
  ASSERT_TRUE(scene.chooseResolution(GetParam()));
  for (const Kind& kind : kKinds) {
    const auto drawn = scene.drawn(kind.key);
    ASSERT_EQ(drawn.size(), 1u) << kind.key;
    EXPECT_EQ(drawn[0].description, kind.description);
    const QPointF off = drawn[0].centre - scene.place(kind.thing, kind.part);
    const double distance = std::hypot(off.x(), off.y());
    std::printf("%s at resolution %d: %.2f pixels off\n", kind.description.c_str(), GetParam(),
                distance);
    EXPECT_LT(distance, kNear) << kind.key;
  }
}

INSTANTIATE_TEST_SUITE_P(Resolutions, DrawnDetections, testing::Range(0, 4));

TEST(DrawnCircles, HaveTheSizeOfTheirThings) {
  DrawnScene scene;
  for (const Kind& kind : kKinds) {
    if (!kind.isAsLargeAsItsThing) continue;
    scene.tick(kind.box);
    const auto drawn = scene.drawn(kind.key);
    ASSERT_EQ(drawn.size(), 1u) << kind.key;
    EXPECT_NEAR(drawn[0].box.width(), scene.truth(kind.thing).width * 320, 5) << kind.key;
  }
}

TEST(DrawnFaces, StandOnTheFacesOfAPhotograph) {
  SKIP_WITHOUT_SAMPLES();
  DrawnScene scene((kSamples / "inpaint_result.jpg").string());
  scene.tick("face detection");
  std::vector<DrawnItem> drawn = scene.drawn("FaceDetected");
  ASSERT_EQ(drawn.size(), 3u);
  // By eye, from left to right.
  const QPointF noses[] = {{60, 46}, {60, 166}, {220, 166}};
  for (std::size_t i = 0; i < 3; ++i) {
    const QPointF off = drawn[i].centre - noses[i];
    EXPECT_LT(std::hypot(off.x(), off.y()), 8) << i;
    EXPECT_EQ(drawn[i].description, "face " + std::to_string(i));
  }
}

// The viewer's lines that are more than information.
std::vector<std::string> complaintsIn(const LogCapture& log) {
  std::vector<std::string> lines;
  for (const zu::log::Record& record : log.records())
    if (record.level <= zu::log::Level::warning)
      lines.push_back(record.category + "." + record.function + ": " + record.text);
  return lines;
}

TEST(AllDetections, AreDrawnTogetherAndNobodyComplains) {
  LogCapture log;
  DrawnScene scene;
  for (const Kind& kind : kKinds) scene.tick(kind.box);
  for (const Kind& kind : kKinds) EXPECT_EQ(scene.drawn(kind.key).size(), 1u) << kind.key;
  EXPECT_TRUE(scene.waitForFrames(3));
  EXPECT_EQ(complaintsIn(log), std::vector<std::string>());
  const std::string robot = scene.robotsLog();
  for (const char* level : {" warning ", " error ", " critical "})
    EXPECT_EQ(robot.find(level), std::string::npos) << robot;
}

}  // namespace
