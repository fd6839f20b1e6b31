// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "robot/camera/scene_pictures.h"
#include "robot/extractors/pictures/taught_folder.h"
#include "robot/in_process_robot.h"
#include "robot/test_folder.h"
#include "support/log_capture.h"

namespace robot {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Labels = std::vector<std::string>;

class PictureFolderTest : public testing::Test {
 protected:
  void put(const std::string& file, const cv::Mat& picture) { cv::imwrite(fDir / file, picture); }
  void write(const std::string& file, const std::string& text) {
    std::ofstream(fDir / file, std::ios::binary) << text;
  }
  Labels load() {
    fFolder.rescan();
    fFolder.loadSome(1h);
    return labels();
  }
  Labels labels() const {
    Labels labels;
    for (const auto& picture : fFolder.pictures()) labels.push_back(picture->label);
    return labels;
  }
  // The log's, and what it says no more afterwards.
  std::vector<std::string> warnings() {
    auto lines = fLog.lines("kyrobot");
    fLog.clear();
    return lines;
  }
  std::string leftOut(const std::string& file, const std::string& why) const {
    return "warning KyTest: \"" + fDir / file + "\" " + why + "; left out";
  }

  LogCapture fLog;
  TestFolder fDir;
  PictureFolder fFolder{fDir.path(), "KyTest"};
};

TEST_F(PictureFolderTest, LabelsPicturesByTheirFilesNames) {
  put("tea pot.png", paintHarbour());
  put("Ähre_2.jpeg", paintEmblem());
  put("a.b.bmp", paintEmblem());
  EXPECT_EQ(load(), (Labels{"a.b", "tea pot", "Ähre_2"}));
  EXPECT_EQ(warnings(), std::vector<std::string>{});
}

TEST_F(PictureFolderTest, IsEmptyWithoutPictures) {
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings(), std::vector<std::string>{});
}

TEST_F(PictureFolderTest, WarnsByNameOfWhatCannotBeLoadedAndLoadsTheRest) {
  put("good.png", paintHarbour());
  write("empty.png", "");
  write("notes.txt", "buy a frame");
  write("torn.jpg", "\xff\xd8\xff\xe0 and no more");
  put("plain.png", cv::Mat(100, 100, CV_8UC3, cv::Scalar::all(90)));
  EXPECT_EQ(load(), Labels{"good"});
  EXPECT_EQ(warnings(), (std::vector<std::string>{
                            leftOut("empty.png", "is no picture that can be read"),
                            leftOut("notes.txt", "is no picture that can be read"),
                            leftOut("plain.png", "has too little detail to be recognised"),
                            leftOut("torn.jpg", "is no picture that can be read")}));
}

TEST_F(PictureFolderTest, RefusesAHugeFile) {
  write("huge.png", "");
  fs::resize_file(fDir / "huge.png", TaughtPicture::kLargestFile + 1);  // takes no room on disk
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings(),
            std::vector<std::string>{leftOut("huge.png", "is larger than 64 MB; make it smaller")});
}

TEST_F(PictureFolderTest, ShrinksLargePictures) {
  cv::Mat large;
  cv::resize(paintHarbour(), large, {3520, 2560}, 0, 0, cv::INTER_LINEAR);
  put("large.png", large);
  ASSERT_EQ(load(), Labels{"large"});
  EXPECT_EQ(fFolder.pictures()[0]->size, cv::Size(480, 349));
}

TEST_F(PictureFolderTest, LeavesAStripOfAPictureOutWithoutHarm) {
  put("strip.png", cv::Mat(2, 20000, CV_8UC3, cv::Scalar::all(9)));
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings(), std::vector<std::string>{
                            leftOut("strip.png", "has too little detail to be recognised")});
}

TEST_F(PictureFolderTest, PassesOverHiddenFilesAndFolders) {
  put(".hidden.png", paintHarbour());
  fs::create_directory(fDir / "more");
  put("more/inside.png", paintHarbour());
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings(), std::vector<std::string>{});
}

TEST_F(PictureFolderTest, SaysThatItCannotBeRead) {
  fs::remove(fDir.path());
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings(), std::vector<std::string>{"warning KyTest: \"" + fDir.path().string() +
                                                 "\" can't be read: No such file or directory"});
}

TEST_F(PictureFolderTest, TakesTheFirstSixtyFourByName) {
  for (int i = 100; i < 167; ++i) write(std::to_string(i) + ".png", "");
  fFolder.rescan();
  EXPECT_EQ(warnings(),
            std::vector<std::string>{"warning KyTest: \"" + fDir.path().string() +
                                     "\" holds 67 files; only the first 64 by name are loaded"});
  fFolder.loadSome(1h);
  const auto told = warnings();
  ASSERT_EQ(told.size(), 64u);
  EXPECT_EQ(told.back(), leftOut("163.png", "is no picture that can be read"));
}

TEST_F(PictureFolderTest, KeepsWhatHasNotChangedAndForgetsWhatIsGone) {
  put("stays.png", paintHarbour());
  put("goes.png", paintHarbour());
  put("changes.png", paintHarbour());
  load();
  const auto before = fFolder.pictures();
  fs::remove(fDir / "goes.png");
  put("changes.png", paintEmblem());
  put("new.png", paintEmblem());
  EXPECT_EQ(load(), (Labels{"changes", "new", "stays"}));
  EXPECT_NE(fFolder.pictures()[0], before[0]);
  EXPECT_EQ(fFolder.pictures()[2], before[2]);
}

TEST_F(PictureFolderTest, TriesAgainWhatCouldNotBeLoaded) {
  write("late.png", "");
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(load(), Labels{});
  EXPECT_EQ(warnings().size(), 2u) << "who asks for it is told again";
  put("late.png", paintEmblem());
  EXPECT_EQ(load(), Labels{"late"});
}

TEST_F(PictureFolderTest, LoadsAPictureAtATimeWhenThereIsNoTime) {
  put("a.png", paintHarbour());
  put("b.png", paintEmblem());
  fFolder.rescan();
  EXPECT_EQ(labels(), Labels{});
  fFolder.loadSome(0ms);
  EXPECT_EQ(labels(), Labels{"a"});
  fFolder.loadSome(0ms);
  EXPECT_EQ(labels(), (Labels{"a", "b"}));
}

TEST(TaughtFolder, IsMadeWithAFirstPicture) {
  const TestFolder dir;
  const fs::path folder = dir.path() / "home/pictures";
  makeTaughtFolder(folder, "harbour days", paintHarbour());
  EXPECT_EQ(readTaughtPicture(folder / "harbour days.png").label, "harbour days");
}

TEST(TaughtFolder, IsLeftAloneWhenItIsThere) {
  const TestFolder dir;
  makeTaughtFolder(dir.path(), "harbour days", paintHarbour());
  EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST(TaughtFolder, SaysWhyItCannotBeMade) {
  const TestFolder dir;
  std::ofstream(dir / "file") << "x";
  EXPECT_EQ(errorText([&] { makeTaughtFolder(dir / "file", "it", paintEmblem()); }),
            "the folder \"" + dir / "file" + "\" can't be made: Not a directory");
}

}  // namespace
}  // namespace robot
