// SPDX-License-Identifier: Apache-2.0
#include "command_line.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using Lookout::CommandLine;
using Lookout::CommandLineError;

namespace {

CommandLine parse(QStringList arguments) {
  return Lookout::parseCommandLine(QStringList{"lookout"} + arguments);
}

std::string errorOf(const QStringList& arguments) {
  try {
    parse(arguments);
    return "no error";
  } catch (const CommandLineError& error) {
    const std::string text = error.what();
    const std::string hint = "\nTry 'lookout --help'.";
    EXPECT_TRUE(text.ends_with(hint)) << text;
    return text.substr(0, text.size() - hint.size());
  }
}

}  // namespace

TEST(CommandLine, AsksForNothingByDefault) {
  const CommandLine options = parse({});
  EXPECT_TRUE(options.robots.empty());
  EXPECT_FALSE(options.play);
  EXPECT_FALSE(options.report);
  EXPECT_FALSE(options.quitAfter);
  EXPECT_TRUE(options.screenshot.isEmpty());
  EXPECT_TRUE(options.answer.isEmpty());
}

TEST(CommandLine, TakesEverythingAtOnce) {
  const QTemporaryDir folder;
  const CommandLine options =
      parse({"--robot", "127.0.0.1:9559", "--robot=tam", "--robot", "[::1]:4", "--play", "--report",
             "--screenshot", folder.filePath("a.png"), "--quit-after", "1.5", "--plugins",
             folder.path(), "--resources", folder.path()});
  EXPECT_EQ(options.robots,
            (std::vector<Ky::KyAddress>{{"127.0.0.1", 9559}, {"tam", 9559}, {"::1", 4}}));
  EXPECT_TRUE(options.play);
  EXPECT_TRUE(options.report);
  EXPECT_EQ(options.screenshot, folder.filePath("a.png"));
  EXPECT_EQ(options.quitAfter, 1.5);
  EXPECT_EQ(options.plugins, folder.path());
  EXPECT_EQ(options.resources, folder.path());
}

TEST(CommandLine, TakesRobotsThatAreReachedWithoutEncryption) {
  const CommandLine options = parse({"--insecure-robot", "tam", "--robot", "other"});
  EXPECT_EQ(options.robots, (std::vector<Ky::KyAddress>{{"other", 9559}, {"tam", 9559}}));
  EXPECT_EQ(options.insecureRobots, (std::vector<Ky::KyAddress>{{"tam", 9559}}));
  EXPECT_EQ(errorOf({"--insecure-robot", ""}),
            "--insecure-robot: Type the robot's name or IP address.");
}

TEST(CommandLine, TakesThePluginsThatShowTheRobots) {
  EXPECT_EQ(parse({"--robot", "tam", "--plugin", "b", "--plugin=a", "--plugin", "b"}).robotPlugins,
            (QStringList{"b", "a"}));
  EXPECT_TRUE(parse({"--robot", "tam"}).robotPlugins.isEmpty());
  EXPECT_EQ(errorOf({"--plugin", "a"}), "--plugin: name the robot to open it for with --robot");
}

TEST(CommandLine, TakesHowThePicturesCome) {
  for (const char* word : {"automatic", "exact", "saving"})
    EXPECT_EQ(parse({"--robot", "tam", "--pictures", word}).pictures, word);
  EXPECT_TRUE(parse({"--robot", "tam"}).pictures.isEmpty());
  for (const char* word : {"lossy", "Exact", ""})
    EXPECT_EQ(errorOf({"--robot", "tam", "--pictures", word}),
              std::string("--pictures: '") + word + "' is none of automatic, exact and saving");
  EXPECT_EQ(errorOf({"--pictures", "exact"}),
            "--pictures: name the robot whose pictures they are with --robot");
}

TEST(CommandLine, TakesWhatTheRobotsShow) {
  const CommandLine options =
      parse({"--robot", "tam", "--stage", "--fps", "30", "--size", "640x480", "--detect", "face",
             "--detect=ball", "--detect", "face"});
  EXPECT_TRUE(options.stage);
  EXPECT_EQ(options.choices,
            (std::vector<std::pair<QString, QString>>{
                {"size", "640x480"}, {"fps", "30"}, {"detect", "face"}, {"detect", "ball"}}))
      << "the size first: the rate may depend on it";
  EXPECT_FALSE(parse({"--robot", "tam"}).stage);
  EXPECT_TRUE(parse({"--robot", "tam"}).choices.empty());
}

TEST(CommandLine, RefusesToShowWhatThereIsNot) {
  for (const char* size : {"640", "640*480", "800x600", ""})
    EXPECT_EQ(
        errorOf({"--robot", "tam", "--size", size}),
        std::string("--size: '") + size + "' is none of 160x120, 320x240, 640x480 and 1280x960");
  for (const char* rate : {"0", "31", "-1", "2.5", "fast", ""})
    EXPECT_EQ(errorOf({"--robot", "tam", "--fps", rate}),
              std::string("--fps: '") + rate + "' is no whole number from 1 to 30");
  EXPECT_EQ(errorOf({"--robot", "tam", "--detect", "unicorn"}),
            "--detect: 'unicorn' is none of ball, duck, face, logo, mark and picture");
  EXPECT_EQ(errorOf({"--stage"}), "--stage: name the robot whose picture it shows with --robot");
  EXPECT_EQ(errorOf({"--size", "640x480"}),
            "--size: name the robot whose pictures they are with --robot");
  EXPECT_EQ(errorOf({"--fps", "5"}), "--fps: name the robot whose pictures they are with --robot");
  EXPECT_EQ(errorOf({"--detect", "face"}),
            "--detect: name the robot that is to look for it with --robot");
}

TEST(CommandLine, ExplainsItselfWithExamples) {
  const QString help = parse({"--help"}).answer;
  for (const char* word : {"--robot", "--insecure-robot", "--plugin ", "--pictures", "--stage",
                           "--size", "--fps", "--detect", "--play", "--screenshot", "--quit-after",
                           "--plugins", "--resources", "--report", "Examples:"})
    EXPECT_TRUE(help.contains(word)) << word;
  EXPECT_TRUE(parse({"--version"}).answer.startsWith("lookout "));
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ(errorOf({"--robt"}), "Unknown option 'robt'.");
  EXPECT_EQ(errorOf({"--robot"}), "Missing value after '--robot'.");
  EXPECT_EQ(errorOf({"127.0.0.1"}), "'127.0.0.1' is no option; robots are given with --robot");
}

TEST(CommandLine, LeavesQtsOptionsToQt) {
  for (const QStringList& qts : std::vector<QStringList>{{"-platform", "offscreen"},
                                                         {"-style", "fusion"},
                                                         {"-style=fusion"},
                                                         {"-stylesheet", "a.qss"},
                                                         {"-qwindowgeometry", "800x600+1+2"},
                                                         {"-geometry", "800x600"},
                                                         {"-display", ":1"},
                                                         {"-platformtheme", "gtk3"},
                                                         {"-qwindowtitle", "--robt"},
                                                         {"-reverse"},
                                                         {"-session", "1"}}) {
    const CommandLine options = parse(qts + QStringList{"--robot", "tam"} + qts);
    EXPECT_EQ(options.robots.size(), 1u) << qts[0].toStdString();
    EXPECT_EQ(options.choosesDisplay, qts[0] == "-platform" || qts[0] == "-display");
  }
  EXPECT_TRUE(parse({"--help"}).answer.contains("-platform"));
}

TEST(CommandLine, RefusesQtsOptionsWithoutTheirValueAndThoseThatAreNone) {
  EXPECT_EQ(errorOf({"--play", "-platform"}), "Missing value after '-platform'.");
  EXPECT_EQ(errorOf({"--plug", "folder"}), "Unknown option 'plug'.");
  EXPECT_NE(errorOf({"-platforms", "offscreen"}), "no error");
}

TEST(CommandLine, RefusesAddressesThatAreNone) {
  EXPECT_EQ(errorOf({"--robot", "tam:x"}),
            "--robot: 'tam:x' is no address: 'x' is no port from 0 to 65535");
  EXPECT_EQ(errorOf({"--robot", ""}), "--robot: Type the robot's name or IP address.");
  EXPECT_NE(errorOf({"--robot", "tam:0"}), "no error");
  EXPECT_NE(errorOf({"--robot", "tam:65536"}), "no error");
}

TEST(CommandLine, RefusesNumbersThatAreNone) {
  for (const char* text : {"soon", "-1", "nan", "inf", "1e9", ""})
    EXPECT_EQ(errorOf({"--quit-after", text}), std::string("--quit-after: '") + text +
                                                   "' is no number of seconds from 0 to 1000000");
}

TEST(CommandLine, RefusesFoldersThatDoNotExist) {
  EXPECT_EQ(errorOf({"--plugins", "/no/such"}), "--plugins: there is no folder '/no/such'");
  EXPECT_EQ(errorOf({"--resources", "/no/such"}), "--resources: there is no folder '/no/such'");
  EXPECT_EQ(errorOf({"--screenshot", "/no/such/a.png"}),
            "--screenshot: there is no folder '/no/such'");
  EXPECT_EQ(errorOf({"--screenshot", "/"}), "--screenshot: '/' is no file name");
}
