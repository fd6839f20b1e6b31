// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <opencv2/imgproc.hpp>

#include "robot/camera/field_of_view.h"
#include "robot/camera/generated_scene.h"
#include "robot/extractors/faces/face_detector.h"
#include "robot/in_process_robot.h"
#include "robot/test_folder.h"
#include "samples.h"

namespace robot {
namespace {

using Ky::KyValue;

KyValue facesIn(const cv::Mat& picture) {
  FaceDetector detector;
  return detector.detect(Frame(picture, 3000004, 0)).at(0).value;
}

cv::Mat sceneAt(std::int64_t time) {
  return GeneratedScene(0).render(time);
}

// The fields of a picture that is made of equal fields with a face in each.
std::vector<cv::Rect> fieldsOf(cv::Rect whole, int columns, int rows) {
  std::vector<cv::Rect> fields;
  for (int i = 0; i < columns * rows; ++i)
    fields.emplace_back(whole.x + i % columns * whole.width / columns,
                        whole.y + i / columns * whole.height / rows, whole.width / columns,
                        whole.height / rows);
  return fields;
}

// What a person sees, in the photograph on its canvas of 640 x 480, and what the finder makes of
// it. Found, missed and false are counts of faces.
struct Photo {
  const char* name;
  std::vector<cv::Rect> faces;
  int found, missed, wrong;
};

void PrintTo(const Photo& photo, std::ostream* out) {
  *out << photo.name;
}

const std::vector<Photo> kPhotos = {
    // One of the two looks aside, and is blurred.
    {"basketball1.png", {{75, 90, 36, 44}, {512, 62, 50, 75}}, 1, 1, 0},
    {"basketball2.png", {{75, 90, 36, 44}, {500, 50, 60, 90}}, 1, 1, 0},
    {"messi5.jpg", {{265, 150, 42, 46}}, 1, 0, 0},
    // Side views.
    {"left06.jpg", {{235, 110, 90, 140}}, 0, 1, 0},
    {"right06.jpg", {{150, 110, 60, 140}}, 0, 1, 0},
    {"227943776_1.jpg", {{225, 110, 170, 190}}, 1, 0, 0},
    {"230501201_1.jpg", {{250, 130, 180, 200}}, 1, 0, 0},
    {"face_swapped.jpg", {{240, 105, 170, 195}}, 1, 0, 0},
    {"faceDetection.png", {{300, 205, 130, 160}}, 1, 0, 0},
    {"inpaint_result.jpg", {{85, 42, 80, 95}, {85, 278, 80, 95}, {402, 278, 80, 95}}, 3, 0, 0},
    {"superpixels_demo.png", {{184, 133, 60, 70}}, 1, 0, 0},
    // Many dots are painted on these faces.
    {"facereg.jpg",
     {{125, 30, 140, 160}, {370, 30, 145, 155}, {130, 265, 150, 160}, {360, 262, 150, 165}},
     4,
     0,
     0},
    {"12.jpg", {{58, 150, 110, 135}}, 1, 0, 0},
    {"2.jpg", fieldsOf({0, 119, 640, 242}, 8, 3), 21, 3, 0},
    {"3.jpg", fieldsOf({0, 133, 640, 214}, 6, 2), 11, 1, 0},
    // No faces. The first is of a robot, drawn.
    {"ml.png", {}, 0, 0, 1},
    {"left01.jpg", {}, 0, 0, 0},
    {"left11.jpg", {}, 0, 0, 0},
    {"left14.jpg", {}, 0, 0, 0},
    {"right14.jpg", {}, 0, 0, 0},
    {"baboon.jpg", {}, 0, 0, 0},
    {"chicky_512.png", {}, 0, 0, 0},
    {"graf1.png", {}, 0, 0, 0},
    {"squirrel_cls.jpg", {}, 0, 0, 0},
    {"sudoku.png", {}, 0, 0, 0},
};

class FacesOnPhotos : public testing::TestWithParam<Photo> {};

TEST_P(FacesOnPhotos, AreFoundAsTheTableSays) {
  SKIP_WITHOUT_SAMPLES();
  const Photo& photo = GetParam();
  cv::Mat grey;
  cv::cvtColor(frameOf(photo.name).picture(2), grey, cv::COLOR_BGR2GRAY);
  FaceFinder finder;
  std::vector<cv::Rect> left = photo.faces;
  int wrong = 0;
  for (const Face& face : finder.find(grey)) {
    const cv::Point middle = (face.area.tl() + face.area.br()) / 2;
    const auto hit = std::find_if(left.begin(), left.end(),
                                  [&](const cv::Rect& area) { return area.contains(middle); });
    if (hit == left.end())
      ++wrong;
    else
      left.erase(hit);
  }
  EXPECT_EQ(photo.faces.size() - left.size(), static_cast<std::size_t>(photo.found));
  EXPECT_EQ(left.size(), static_cast<std::size_t>(photo.missed));
  EXPECT_EQ(wrong, photo.wrong);
}

std::string nameOf(const testing::TestParamInfo<Photo>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Photos, FacesOnPhotos, testing::ValuesIn(kPhotos), nameOf);

TEST(FaceDetector, WritesTheFacesAndAnEntryThatIsNone) {
  constexpr std::int64_t kTime = 1700000000000000;
  const KyValue value = facesIn(sceneAt(kTime));
  ASSERT_EQ(value.size(), 2u);
  EXPECT_EQ(value[0], KyValue::array({3, 4})) << "seconds and microseconds of the picture";
  ASSERT_EQ(value[1].size(), 2u) << "one face, and the entry that readers leave out";
  const KyValue& shape = value[1][0][0];
  ASSERT_EQ(shape.size(), 5u);
  EXPECT_GT(shape[1].asFloat(), 0) << "on the left";
  EXPECT_LT(shape[3].asFloat(), 0);
  EXPECT_LT(shape[4].asFloat(), 0);
  EXPECT_GE(value[1][0][1][0].asInt(), 5);
  EXPECT_EQ(value[1][1], KyValue::array({1}));
}

TEST(FaceDetector, FindsThePersonOfTheSceneWhereItIs) {
  const GeneratedScene scene(0);
  FaceDetector detector;
  for (int step = 0; step < 6; ++step) {
    const std::int64_t time = 1700000000000000 + step * 1900000;
    const auto truths = scene.truthAt(time);
    const auto truth = std::find_if(truths.begin(), truths.end(),
                                    [](const SceneTruth& one) { return one.name == "face"; });
    const KyValue value = detector.detect(Frame(scene.render(time), time, 0)).at(0).value;
    ASSERT_EQ(value.size(), 2u) << step;
    ASSERT_EQ(value[1].size(), 2u) << step;
    EXPECT_NEAR(value[1][0][0][1].asFloat(), alphaAt(truth->x), -alphaOver(2.0 / 320)) << step;
    EXPECT_NEAR(value[1][0][0][2].asFloat(), betaAt(truth->y), -betaOver(2.0 / 240)) << step;
  }
}

TEST(FaceDetector, FindsAFaceAtEverySizeFromAThirtiethOfThePicture) {
  constexpr std::int64_t kTime = 1700000000000000;
  const cv::Mat person = sceneAt(kTime)(cv::Rect(14, 360, 200, 200));
  for (const int width : {64, 100, 200, 400, 900}) {
    cv::Mat picture(960, 1280, CV_8UC3, cv::Scalar::all(150)), scaled;
    cv::resize(person, scaled, {width, width}, 0, 0, cv::INTER_AREA);
    scaled.copyTo(picture(cv::Rect(30, 20, width, width)));
    EXPECT_EQ(facesIn(picture).size(), 2u) << width;
  }
}

TEST(FaceDetector, FindsNothingOnAGreyPicture) {
  for (const int level : {0, 128, 255})
    EXPECT_EQ(facesIn(cv::Mat(480, 640, CV_8UC3, cv::Scalar::all(level))), KyValue::array());
}

TEST(FaceDetector, TakesNoiseForNoFace) {
  cv::Mat noise(480, 640, CV_8UC3);
  cv::theRNG().state = 5;
  cv::randu(noise, 0, 256);
  EXPECT_EQ(facesIn(noise), KyValue::array());
}

TEST(FaceDetector, SaysWhatToInstallWhenItDoesNotKnowHowFacesLook) {
  const TestFolder empty;
  const std::string file = empty / "haarcascade_frontalface_alt2.xml";
  const std::string complaint =
      "\"" + file +
      "\", which tells how a face looks, can't be read; install Debian's package opencv-data";
  EXPECT_EQ(errorText([&] { FaceDetector detector(empty.path()); }), complaint);
  std::ofstream(file) << "no XML";
  EXPECT_EQ(errorText([&] { FaceDetector detector(empty.path()); }), complaint);
}

}  // namespace
}  // namespace robot
