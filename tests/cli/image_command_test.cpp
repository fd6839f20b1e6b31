// SPDX-License-Identifier: Apache-2.0
// ky image, as people run it.
#include <filesystem>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <sstream>

#include "../robot/kyrobot_process.h"
#include "../robot/test_folder.h"
#include "scripted_camera.h"
#include "support/process.h"

namespace {

namespace fs = std::filesystem;

struct Result {
  int code;
  std::string out;
  std::string err;
};

Result ky(std::vector<std::string> arguments) {
  Process command(KY, arguments);
  const auto code = command.waitForExit();
  return {code.value_or(-1), command.output(), command.errors()};
}

class ImageCommand : public testing::Test {
 protected:
  ImageCommand() {
    robot.camera->answer = [](int) { return recordOf(1, 5000000); };
  }

  Result image(const std::string& file, std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"image", file, "--robot", robot.address()});
    return ky(options);
  }
  // Exactly what is in the folder.
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.path()))
      names.push_back(entry.path().filename().string());
    return names;
  }

  TestFolder folder;
  CameraRobot robot{ScriptedCamera::Offers::Nothing};
};

TEST_F(ImageCommand, SavesWhatTheRobotSees) {
  for (const char* name : {"a.png", "a.jpg", "b.JPEG"}) {
    const std::string file = folder / name;
    const Result result = image(file);
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out, file + ": 320 x 240\n");
    const cv::Mat saved = cv::imread(file, cv::IMREAD_COLOR);
    ASSERT_EQ(saved.size(), cv::Size(kWidth, kHeight)) << name;
    EXPECT_GT(cv::PSNR(saved, view(1)), 38) << name;
  }
  EXPECT_EQ(files().size(), 3u);
  EXPECT_TRUE(robot.camera->wasCalled("subscribe \"\" 2 9 "));
  EXPECT_TRUE(robot.camera->wasCalled("unsubscribe \"ky_1\""));
}

TEST_F(ImageCommand, WritesWhatItsNameSays) {
  const auto beginning = [&](const std::string& file) {
    EXPECT_EQ(image(file).code, 0);
    std::string bytes(4, 0);
    std::ifstream(file).read(bytes.data(), 4);
    return bytes;
  };
  EXPECT_EQ(beginning(folder / "a.png"), "\x89PNG");
  EXPECT_EQ(beginning(folder / "a.jpg").substr(0, 3), "\xff\xd8\xff");
}

TEST_F(ImageCommand, TellsScriptsInJson) {
  const std::string file = folder / "a.png";
  EXPECT_EQ(image(file, {"--json", "--resolution", "3"}).out, "[\"" + file + "\",320,240]\n");
  EXPECT_TRUE(robot.camera->wasCalled("subscribe \"\" 3 9 "));
}

TEST_F(ImageCommand, RefusesWhatItCannotDo) {
  const Result ending = image(folder / "a.gif");
  EXPECT_EQ(ending.code, 2);
  EXPECT_EQ(ending.err, "ky: '" + (folder / "a.gif") +
                            "' has another ending than .png or .jpg or .jpeg, which says what to "
                            "write into it\nTry 'ky --help'.\n");
  const Result resolution = image(folder / "a.png", {"--resolution", "4"});
  EXPECT_EQ(resolution.code, 2);
  EXPECT_NE(resolution.err.find("--resolution"), std::string::npos) << resolution.err;
  const Result pictures = image(folder / "a.png", {"--pictures", "blurred"});
  EXPECT_EQ(pictures.code, 2);
  for (const char* word : {"blurred", "automatic", "exact", "saving"})
    EXPECT_NE(pictures.err.find(word), std::string::npos) << pictures.err;
  EXPECT_FALSE(robot.camera->wasCalled("")) << "nobody was asked";
  EXPECT_TRUE(files().empty());
}

TEST_F(ImageCommand, SaysWhereItCannotWrite) {
  const Result missing = image(folder / "no/a.png");
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.err, "ky: can't write '" + (folder / "no/a.png") + "': there is no folder " +
                             (folder / "no") + "\n");
  fs::create_directory(folder / "b.png");
  EXPECT_EQ(image(folder / "b.png").err,
            "ky: can't write '" + (folder / "b.png") + "': it is a folder\n");
  EXPECT_FALSE(robot.camera->wasCalled("")) << "nobody was asked";
}

TEST_F(ImageCommand, LeavesWhatWasThereWhenTheDiskIsFull) {
  const std::string file = folder / "a.png";
  std::ofstream(file) << "old";
  fs::create_symlink("/dev/full", file + ".part");
  const Result result = image(file);
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "ky: can't write '" + file + "': No space left on device\n");
  EXPECT_EQ(files(), std::vector<std::string>{"a.png"});
  std::stringstream left;
  left << std::ifstream(file).rdbuf();
  EXPECT_EQ(left.str(), "old");
}

TEST_F(ImageCommand, SaysWhatTheRobotSaysInPlaceOfAPicture) {
  robot.camera->answer = [](int) -> Ky::KyValue { throw Ky::KyError("the camera is unplugged"); };
  Result result = image(folder / "a.png");
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("the camera is unplugged"), std::string::npos) << result.err;

  const Ky::KyBinary few(std::vector<std::uint8_t>(10));
  for (const Ky::KyValue& wrong :
       {Ky::KyValue(), Ky::KyValue("picture"), record(few, 0), record(few, 0, 0, 0),
        record(few, 0, -4, 100), record(few, 0, 100000, 100000), record(few, 0, 3, 3)}) {
    robot.camera->answer = [&](int) { return wrong; };
    result = image(folder / "a.png");
    EXPECT_EQ(result.code, 1) << wrong.toString();
    EXPECT_TRUE(result.err.starts_with("ky: ")) << result.err;
  }
  EXPECT_TRUE(files().empty());
}

TEST_F(ImageCommand, SaysThatARobotHasNoCameras) {
  const auto plain = CameraRobot::listening();
  const std::string address = plain->address().toString();
  const Result result = ky({"image", folder / "a.png", "--robot", address});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "ky: the robot " + address + " has no cameras: there is no module KyVideoDevice\n");
  plain->shutdown();
}

TEST_F(ImageCommand, SavesWhatARealRobotSees) {
  KyrobotProcess real({"--port", "0", "--camera", "0=generated"});
  const std::string file = folder / "a.png";
  const Result result =
      ky({"image", file, "--resolution", "3", "--robot", real.address().toString()});
  EXPECT_EQ(result.out, file + ": 1280 x 960\n") << result.err;
  const cv::Mat saved = cv::imread(file, cv::IMREAD_COLOR);
  ASSERT_EQ(saved.size(), cv::Size(1280, 960));
  cv::Scalar mean, deviation;
  cv::meanStdDev(saved, mean, deviation);
  for (int channel = 0; channel < 3; ++channel) EXPECT_GT(deviation[channel], 10);
}

}  // namespace
