// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <fstream>

#include "kyrobot_process.h"
#include "robot/robot.h"

namespace {

struct Ended {
  int code;
  std::string output, errors;
};

Ended runKyrobot(std::vector<std::string> options) {
  KyrobotProcess robot(std::move(options));
  const int code = robot.process().waitForExit().value_or(-1000);
  return {code, robot.process().output(), robot.process().errors()};
}

void expectWrongOption(std::vector<std::string> options, const std::string& explanation) {
  const Ended ended = runKyrobot(std::move(options));
  EXPECT_EQ(ended.code, 2);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors, "kyrobot: " + explanation + "\nTry \"kyrobot --help\".\n");
}

TEST(KyrobotOptions, HelpExplainsEveryOptionWithExamples) {
  const Ended ended = runKyrobot({"--help"});
  EXPECT_EQ(ended.code, 0);
  EXPECT_EQ(ended.errors, "");
  for (const char* text :
       {"--port", "--listen", "--camera", "--camera-model", "--home", "--logos", "--pictures",
        "--keys", "--insecure", "--without", "--encoder", "--ftp", "--ftp-port", "--ftp-user",
        "--ftp-password-file", "--version", "Examples:", "kyrobot --camera 0=vtest.avi"})
    EXPECT_NE(ended.output.find(text), std::string::npos) << text;
}

TEST(KyrobotOptions, VersionIsOneLine) {
  const Ended ended = runKyrobot({"--version"});
  EXPECT_EQ(ended.code, 0);
  EXPECT_EQ(ended.output.rfind("kyrobot 0.", 0), 0u) << ended.output;
  EXPECT_EQ(ended.output.find('\n'), ended.output.size() - 1);
}

TEST(KyrobotOptions, AWrongOptionIsExplainedAndEndsWithTwo) {
  const Ended ended = runKyrobot({"--colour"});
  EXPECT_EQ(ended.code, 2);
  EXPECT_NE(ended.errors.find("--colour"), std::string::npos) << ended.errors;
  EXPECT_EQ(runKyrobot({"--port", "70000"}).code, 2);
  EXPECT_EQ(runKyrobot({"--port", "many"}).code, 2);
  EXPECT_EQ(runKyrobot({"--port"}).code, 2);
  EXPECT_EQ(runKyrobot({"--camera-model", "3"}).code, 2);
}

TEST(KyrobotOptions, AWrongCameraIsExplained) {
  for (const std::string camera : {"2=generated", "generated", "0=", "=film.avi"})
    expectWrongOption({"--camera", camera},
                      "--camera: \"" + camera +
                          "\" is not INDEX=SOURCE with an INDEX of 0 or 1, such as 0=film.avi");
}

TEST(KyrobotOptions, AnUnknownModuleCannotBeLeftOut) {
  std::string names;
  for (const std::string& name : robot::moduleNames()) names += (names.empty() ? "" : ", ") + name;
  expectWrongOption({"--without", "KyMemroy"},
                    "--without: there is no module \"KyMemroy\"; there are " + names);
}

TEST(KyrobotOptions, AMissingCameraSourceEndsWithOne) {
  const Ended ended = runKyrobot({"--port", "0", "--camera", "1=/nowhere/film.avi"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors,
            "kyrobot: camera 1: there is no file or folder \"/nowhere/film.avi\"; a source is "
            "\"generated\", a film, a picture, a folder of pictures or /dev/videoN\n");
}

TEST(KyrobotOptions, AnEncoderThatCannotBeUsedEndsWithOneAndSaysWhatToDo) {
  const auto errorWith = [](const std::string& encoder) {
    const Ended ended = runKyrobot({"--port", "0", "--encoder", encoder});
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.output, "");
    return ended.errors;
  };
  const std::string advice = "; give --encoder another name, or leave it out for \"libx264\"\n";
  for (const std::string name : {"libx265", "x264"})  // for something else, and none at all
    EXPECT_EQ(errorWith(name), "kyrobot: there is no encoder \"" + name +
                                   "\" for H.264 here; \"libx264\" is always there" + advice);
  EXPECT_EQ(errorWith("libx264rgb"),
            "kyrobot: the encoder \"libx264rgb\" can't take color space 0; \"libx264\" takes all" +
                advice);
}

TEST(KyrobotOptions, AHomeThatCannotBeMadeEndsWithOne) {
  const TestFolder folder;
  std::ofstream(folder / "file") << "in the way";
  const Ended ended = runKyrobot({"--port", "0", "--home", folder / "file"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.errors.find("choose another one with --home"), std::string::npos) << ended.errors;
}

TEST(KyrobotOptions, BeyondThisComputerKeysAreNeeded) {
  const Ended ended = runKyrobot({"--port", "0", "--listen", "0.0.0.0"});
  EXPECT_EQ(ended.code, 1);
  EXPECT_NE(ended.errors.find("--insecure"), std::string::npos) << ended.errors;
}

}  // namespace
