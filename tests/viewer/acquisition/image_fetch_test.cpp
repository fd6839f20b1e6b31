// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>

#include "viewer.h"
#include "viewer/acquisition/yuv_conversion.h"

namespace {

using Lines = std::vector<std::string>;

std::vector<std::uint8_t> noise(std::size_t count) {
  std::vector<std::uint8_t> bytes(count);
  for (std::size_t i = 0; i < count; ++i)
    bytes[i] = static_cast<std::uint8_t>(i * 2654435761U >> 13);
  return bytes;
}

}  // namespace

TEST(ImageFetch, AsksForTheImageUnderItsSubscribersName) {
  Viewer viewer;
  viewer.module->askForVIM();
  viewer.robot.takeCalls();
  viewer.show(record(4, 2, 0, pixels(8)));
  EXPECT_EQ(viewer.robot.calls(), Lines({"KyVideoDevice.getImageRemote(\"viewer_1\")"}));
}

TEST(ImageFetch, StoresSizeAndTimeAndAsksForOneRepaint) {
  Viewer viewer;
  viewer.show(record(320, 240, 9, pixels(320 * 240 * 2)));
  EXPECT_EQ(viewer.model->fWidth, 320);
  EXPECT_EQ(viewer.model->fHeight, 240);
  EXPECT_EQ(viewer.model->fTimestamp, 1331040000250000);
  EXPECT_EQ(viewer.gui.fUpdates, 1);
  EXPECT_TRUE(viewer.log.lines().empty());
}

TEST(ImageFetch, FetchesWithoutAWidget) {
  Viewer viewer;
  viewer.module->setGui(nullptr);
  viewer.show(record(4, 2, 0, pixels(8)));
  EXPECT_EQ(viewer.model->fWidth, 4);
  EXPECT_EQ(viewer.gui.fUpdates, 0);
}

TEST(ImageFetch, ConvertsGreyPixels) {
  Viewer viewer;
  const auto bytes = noise(6 * 4);
  viewer.show(record(6, 4, 0, Ky::KyBinary(bytes)));
  for (int i = 0; i < 24; ++i)
    EXPECT_EQ(viewer.pixel(i), yuv::greyPixel(bytes[static_cast<std::size_t>(i)])) << i;
  EXPECT_EQ(viewer.pixel(24), 0x96969696U);
}

TEST(ImageFetch, ConvertsPairsOfPixels) {
  Viewer viewer;
  viewer.show(record(2, 2, 9, Ky::KyBinary({235, 128, 16, 128, 255, 255, 0, 128})));
  EXPECT_EQ(viewer.pixel(0), 0xFFFEFEFEU);
  EXPECT_EQ(viewer.pixel(1), 0xFF000000U);
  EXPECT_EQ(viewer.pixel(2), yuv::pixel(255, 255, 128));
  EXPECT_EQ(viewer.pixel(3), yuv::pixel(0, 255, 128));
  EXPECT_EQ(viewer.pixel(4), 0x96969696U);
}

TEST(ImageFetch, ConvertsTriples) {
  Viewer viewer;
  viewer.show(record(1, 2, 10, Ky::KyBinary({100, 50, 200, 30, 128, 128})));
  EXPECT_EQ(viewer.pixel(0), yuv::pixel(100, 50, 200));
  EXPECT_EQ(viewer.pixel(1), yuv::pixel(30, 128, 128));
}

TEST(ImageFetch, ConvertsEveryResolution) {
  Viewer viewer;
  const int sizes[][2] = {{160, 120}, {320, 240}, {640, 480}, {1280, 960}};
  for (const auto& [width, height] : sizes) {
    for (const int colorSpace : {0, 9, 10}) {
      const auto bytes = noise(Ky::imageBytes(width, height, colorSpace));
      viewer.show(record(width, height, colorSpace, Ky::KyBinary(bytes)));
      const bool enlarged = width == 160 && colorSpace == 9;
      EXPECT_EQ(viewer.model->fWidth, enlarged ? 320 : width);
      EXPECT_EQ(viewer.model->fHeight, enlarged ? 240 : height);
      if (enlarged) continue;
      const std::uint8_t* last = bytes.data() + bytes.size();
      const std::uint32_t expected = colorSpace == 0   ? yuv::greyPixel(last[-1])
                                     : colorSpace == 9 ? yuv::pixel(last[-2], last[-3], last[-1])
                                                       : yuv::pixel(last[-3], last[-2], last[-1]);
      EXPECT_EQ(viewer.pixel(width * height - 1), expected) << width << ", " << colorSpace;
    }
  }
}

TEST(ImageFetch, LeavesTheLastPixelOfARowOfOddWidth) {
  Viewer viewer;
  viewer.show(record(3, 2, 9, Ky::KyBinary({50, 128, 60, 128, 1, 2, 70, 128, 80, 128, 3, 4})));
  EXPECT_EQ(viewer.pixel(0), yuv::pixel(50, 128, 128));
  EXPECT_EQ(viewer.pixel(1), yuv::pixel(60, 128, 128));
  EXPECT_EQ(viewer.pixel(2), 0x96969696U);
  EXPECT_EQ(viewer.pixel(3), yuv::pixel(70, 128, 128));
  EXPECT_EQ(viewer.pixel(5), 0x96969696U);
}

TEST(ImageFetch, ShowsTheSmallestColourFrameDoubled) {
  Viewer viewer;
  std::vector<std::uint8_t> bytes;
  for (int i = 0; i < 160 * 120 / 2; ++i) bytes.insert(bytes.end(), {235, 128, 235, 128});
  viewer.show(record(160, 120, 9, Ky::KyBinary(bytes)));
  EXPECT_EQ(viewer.model->fWidth, 320);
  EXPECT_EQ(viewer.model->fHeight, 240);
  // Away from the edges, where the scratch buffer holds whatever it held.
  for (int y = 0; y < 240; ++y)
    for (int x = 8; x < 312; ++x)
      ASSERT_EQ(viewer.pixel(y * 320 + x), 0xFFFEFEFEU) << x << " " << y;
  EXPECT_EQ(viewer.gui.fUpdates, 1);
}

// A vertical edge shows the bicubic filter: it overshoots on both sides of the step.
TEST(ImageFetch, EnlargesWithBicubicInterpolation) {
  Viewer viewer;
  std::vector<std::uint8_t> bytes;
  for (int i = 0; i < 160 * 120 / 2; ++i) {
    const auto y = static_cast<std::uint8_t>(i % 80 < 40 ? 80 : 160);
    bytes.insert(bytes.end(), {y, 128, y, 128});
  }
  viewer.show(record(160, 120, 9, Ky::KyBinary(bytes)));
  const auto grey = [&](int x) { return viewer.pixel(100 * 320 + x) & 0xFF; };
  EXPECT_EQ(grey(100), 74U);
  EXPECT_EQ(grey(220), 167U);
  EXPECT_LT(grey(158), 74U);
  EXPECT_GT(grey(161), 167U);
  EXPECT_GT(grey(159), 74U);
  EXPECT_LT(grey(160), 167U);
}

TEST(ImageFetch, ShowsTheSmallestGreyFrameAsItIs) {
  Viewer viewer;
  viewer.show(record(160, 120, 0, pixels(160 * 120)));
  EXPECT_EQ(viewer.model->fWidth, 160);
  EXPECT_EQ(viewer.model->fHeight, 120);
}

TEST(ImageFetch, SaysNothingWhenThereIsNoBufferToEnlargeInto) {
  Viewer viewer;
  unsigned char* const frame = std::exchange(viewer.model->fImageData, nullptr);
  viewer.show(record(160, 120, 9, pixels(160 * 120 * 2)));
  viewer.model->fImageData = frame;
  EXPECT_EQ(viewer.model->fWidth, 320);
  EXPECT_EQ(viewer.gui.fUpdates, 0);
  viewer.show(record(160, 120, 9, pixels(160 * 120 * 2)));
  EXPECT_EQ(viewer.gui.fUpdates, 1) << "the lock must be free again";
}

TEST(ImageFetch, UsesTheDefaultFieldOfViewForARecordOfSevenElements) {
  Viewer viewer;
  viewer.model->fCamera = 1;
  viewer.model->fAngles[0] = 9.0F;
  viewer.show(record(4, 2, 0, pixels(8)));
  EXPECT_EQ(viewer.model->fCamera, 1) << "unchanged";
  EXPECT_EQ(viewer.model->fAngles[0], 0.41692221F);
  EXPECT_EQ(viewer.model->fAngles[1], 0.32097778F);
  EXPECT_EQ(viewer.model->fAngles[2], -0.41692221F);
  EXPECT_EQ(viewer.model->fAngles[3], -0.32097778F);
}

TEST(ImageFetch, TakesTheCameraFromTheEighthElement) {
  Viewer viewer;
  viewer.show(longer(record(4, 2, 0, pixels(8)), 8));
  EXPECT_EQ(viewer.model->fCamera, 1);
  EXPECT_EQ(viewer.model->fAngles[0], 0.41692221F);
  viewer.show(longer(record(4, 2, 0, pixels(8)), 8, 258));
  EXPECT_EQ(viewer.model->fCamera, 2) << "one byte";
}

TEST(ImageFetch, TakesTheFieldOfViewOfMoreThanElevenElements) {
  Viewer viewer;
  viewer.show(longer(record(4, 2, 0, pixels(8)), 11));
  EXPECT_EQ(viewer.model->fAngles[0], 0.41692221F);
  viewer.show(longer(record(4, 2, 0, pixels(8)), 12));
  EXPECT_EQ(viewer.model->fAngles[0], 0.1F);
  EXPECT_EQ(viewer.model->fAngles[1], 0.2F);
  EXPECT_EQ(viewer.model->fAngles[2], 0.1F * 3);
  EXPECT_EQ(viewer.model->fAngles[3], 0.4F);
}

TEST(ImageFetch, KeepsThePixelsOfAnUnknownColourSpace) {
  Viewer viewer;
  viewer.show(record(640, 480, 13, pixels(640 * 480 * 3)));
  EXPECT_EQ(viewer.model->fWidth, 640);
  EXPECT_EQ(viewer.model->fHeight, 480);
  EXPECT_EQ(viewer.model->fTimestamp, 1331040000250000);
  EXPECT_TRUE(std::all_of(viewer.model->fImageData, viewer.model->fImageData + Model::kFrameBytes,
                          [](unsigned char byte) { return byte == 150; }));
  EXPECT_EQ(viewer.gui.fUpdates, 1);
}

TEST(ImageFetch, LogsARobotThatFailsAndCarriesOnWithoutAnImage) {
  Viewer viewer;
  viewer.device->answer("getImageRemote", [](const Ky::KyValue::Array&) -> Ky::KyValue {
    throw Ky::KyError("the camera is unplugged");
  });
  viewer.module->getNext();
  EXPECT_EQ(viewer.log.lines(), Lines({"error getNext: the camera is unplugged",
                                       "error getNext: Wrong number of elements"}));
  EXPECT_EQ(viewer.gui.fUpdates, 0);
  EXPECT_EQ(viewer.model->fWidth, 160);
}

TEST(ImageFetch, KeepsInWordsWhyNoPictureCameUntilOneComes) {
  Viewer viewer;
  EXPECT_EQ(viewer.model->pictureProblem(), "");
  viewer.device->answer("getImageRemote", [](const Ky::KyValue::Array&) -> Ky::KyValue {
    throw Ky::KyError("the camera is unplugged");
  });
  viewer.module->getNext();
  EXPECT_EQ(viewer.model->pictureProblem(), "the camera is unplugged");
  viewer.show(record(4, 2, 0, pixels(8)));
  EXPECT_EQ(viewer.model->pictureProblem(), "");
  viewer.show(Ky::KyValue::array({1, 2}));
  EXPECT_EQ(viewer.model->pictureProblem(), "the robot answers with something that is no image");
  viewer.show(record(4, 2, 0, "no pixels"));
  EXPECT_NE(viewer.model->pictureProblem(), "");
  EXPECT_EQ("error getNext: " + viewer.model->pictureProblem(), viewer.log.lines().back());
}

TEST(ImageFetch, ReturnsAtOnceWithoutAVideoDevice) {
  TestRobot robot;
  CountingGui gui;
  const auto module = Ky::KyModule::createModule<Module>(robot.connect());
  module->setGui(&gui);
  robot.takeCalls();
  LogCapture log;
  module->getNext();
  EXPECT_TRUE(robot.calls().empty());
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(gui.fUpdates, 0);
  EXPECT_NE(module->model()->pictureProblem(), "") << "and knows why there is no picture";
}

TEST(ImageFetch, DoesNotStepThroughStoredImages) {
  Viewer viewer;
  viewer.module->nextImage();
  viewer.module->previousImage();
  EXPECT_TRUE(viewer.robot.calls().empty());
  EXPECT_TRUE(viewer.log.lines().empty());
  EXPECT_EQ(viewer.gui.fUpdates, 0);
  EXPECT_EQ(viewer.model->fTimestamp, 0);
}
