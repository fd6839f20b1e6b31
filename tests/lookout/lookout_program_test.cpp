// SPDX-License-Identifier: Apache-2.0
// The program as people and scripts start it.
#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>
#include <csignal>
#include <fstream>

#include "several_plugins.h"
#include "support/process.h"
#include "tcp_robot.h"

namespace {

// Starts lookout with settings of its own and without a display.
class Program : public Process {
 public:
  explicit Program(const std::vector<std::string>& arguments, Environment environment = {})
      : Program(std::make_shared<QTemporaryDir>(), arguments, std::move(environment)) {}
  // With the settings of another run.
  Program(std::shared_ptr<QTemporaryDir> home, const std::vector<std::string>& arguments,
          Environment environment)
      : Process(LOOKOUT, arguments, with(*home, std::move(environment))), fHome(std::move(home)) {}

 private:
  static Environment with(const QTemporaryDir& home, Environment environment) {
    environment["XDG_CONFIG_HOME"] = home.path().toStdString();
    environment.emplace("QT_QPA_PLATFORM", "offscreen");
    return environment;
  }

  std::shared_ptr<QTemporaryDir> fHome;
};

// A style sheet that changes how everything looks; the path of its file.
std::string writeStyle(const QTemporaryDir& folder) {
  const std::string path = folder.filePath("style.qss").toStdString();
  std::ofstream(path) << "QWidget { background: #123456; }";
  return path;
}

}  // namespace

TEST(Lookout, AnswersAWrongCommandLineWithAnErrorAndCode2) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"--robt"},
                                             {"--robot", "a:b"},
                                             {"--quit-after", "soon"},
                                             {"stray"},
                                             {"--plugins", "/no/such"}}) {
    Program lookout(arguments);
    EXPECT_EQ(lookout.waitForExit(), 2) << arguments[0];
    EXPECT_TRUE(lookout.errors().starts_with("lookout: ")) << lookout.errors();
    EXPECT_NE(lookout.errors().find("Try 'lookout --help'."), std::string::npos);
    EXPECT_TRUE(lookout.output().empty());
  }
}

TEST(Lookout, ExplainsItselfWithoutADisplay) {
  Program lookout({"--help"}, {{"QT_QPA_PLATFORM", ""}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
  EXPECT_EQ(lookout.waitForExit(), 0);
  EXPECT_NE(lookout.output().find("Examples:"), std::string::npos);
}

TEST(Lookout, SaysThatItNeedsADisplay) {
  Program lookout({}, {{"QT_QPA_PLATFORM", ""}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
  EXPECT_EQ(lookout.waitForExit(), 1);
  EXPECT_NE(lookout.errors().find("there is no display"), std::string::npos);
}

TEST(Lookout, RunsWithQtsOptions) {
  const QTemporaryDir folder;
  const auto pictureWith = [&](const std::vector<std::string>& more) {
    const QString file = folder.filePath("window.png");
    std::vector<std::string> arguments = {
        "--plugins",        FIXTURES "/good", "-platform", "offscreen",    "--screenshot",
        file.toStdString(), "-style",         "fusion",    "--quit-after", "0"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    Program lookout(arguments, {{"QT_QPA_PLATFORM", ""}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
    EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
    return QImage(file, "PNG");
  };
  const QImage plain = pictureWith({});
  EXPECT_FALSE(plain.isNull());
  EXPECT_NE(pictureWith({"-stylesheet", writeStyle(folder)}), plain);
}

TEST(Lookout, SpeaksTheLanguageOfTheLocale) {
  const QTemporaryDir folder;
  const auto menuBarIn = [&](const std::string& locale) {
    const QString file = folder.filePath("window.png");
    Program lookout(
        {"--plugins", FIXTURES "/good", "--screenshot", file.toStdString(), "--quit-after", "0"},
        {{"LC_ALL", locale}, {"LANGUAGE", ""}});
    EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
    return QImage(file, "PNG").copy(0, 0, 300, 20);
  };
  const QImage english = menuBarIn("C");
  EXPECT_EQ(menuBarIn("en_US.UTF-8"), english);
  EXPECT_NE(menuBarIn("de_DE.UTF-8"), english);
}

TEST(Lookout, SavesAPictureOfTheWindowAndReports) {
  const TcpRobot robot;
  const QTemporaryDir folder;
  const QString file = folder.filePath("window.png");
  Program lookout({"--plugins", FIXTURES "/good", "--robot", robot.address().toString(), "--report",
                   "--screenshot", file.toStdString(), "--quit-after", "1"});
  EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
  EXPECT_TRUE(lookout.output().starts_with(
      "frames painted: 0, fps shown: 0.0, robot: " + robot.address().toString() +
      ", state: connected, newest picture: none, round trip: "))
      << lookout.output();
  EXPECT_TRUE(lookout.output().ends_with("B/s\n")) << lookout.output();
  const QImage picture(file, "PNG");
  EXPECT_GE(picture.width(), 950);
  EXPECT_GE(picture.height(), 660);
}

TEST(Lookout, FailsWhenARobotThatWasToPlayPaintedNothing) {
  Program lookout({"--plugins", FIXTURES "/good", "--robot", "127.0.0.1:1", "--play", "--report",
                   "--quit-after", "0.1"});
  EXPECT_EQ(lookout.waitForExit(), 1);
  EXPECT_TRUE(lookout.output().starts_with(
      "frames painted: 0, fps shown: 0.0, robot: 127.0.0.1:1, state: connecting, "))
      << lookout.output();
}

TEST(Lookout, ReportsEachPluginOfARobot) {
  const TcpRobot robot;
  const SeveralPlugins plugins({"a_plugin", "b_plugin"});
  Program lookout({"--plugins", plugins.path().toStdString(), "--robot", robot.address().toString(),
                   "--plugin", "b_plugin", "--plugin", "a_plugin", "--report", "--quit-after",
                   "1"});
  EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
  const std::string line =
      "frames painted: 0, fps shown: 0.0, robot: " + robot.address().toString() +
      ", state: connected, ";
  const std::string said = lookout.output();
  EXPECT_TRUE(said.starts_with(line)) << said;
  EXPECT_NE(said.find("B/s, plug-in: b_plugin\n" + line), std::string::npos) << said;
  EXPECT_TRUE(said.ends_with("B/s, plug-in: a_plugin\n")) << said;
}

TEST(Lookout, RefusesAPluginThatIsNotThereAndNamesThoseThatAre) {
  const SeveralPlugins plugins({"a_plugin", "b_plugin"});
  Program lookout({"--plugins", plugins.path().toStdString(), "--robot", "127.0.0.1:1", "--plugin",
                   "a_plugin", "--plugin", "robotless_plugin"});
  EXPECT_EQ(lookout.waitForExit(), 2);
  EXPECT_NE(lookout.errors().find(
                "lookout: --plugin: no plug-in for robots is called 'robotless_plugin'; in " +
                plugins.path().toStdString() +
                " there is: a_plugin, b_plugin\n"
                "Try 'lookout --help'.\n"),
            std::string::npos)
      << lookout.errors();
  EXPECT_TRUE(lookout.output().empty());
}

TEST(Lookout, FailsWhenNoPluginShowsRobots) {
  Program lookout({"--plugins", FIXTURES "/broken", "--robot", "127.0.0.1:1", "--quit-after", "0"});
  EXPECT_EQ(lookout.waitForExit(), 1);
  EXPECT_NE(lookout.errors().find("functionThatNobodyDefines"), std::string::npos);
}

TEST(Lookout, OpensTheStageAndChoosesWhatItIsTold) {
  const TcpRobot robot;
  Program lookout({"--plugins", FIXTURES "/viewing", "--robot", robot.address().toString(),
                   "--stage", "--size", "640x480", "--fps", "30", "--quit-after", "1"});
  EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
  EXPECT_NE(lookout.errors().find("a stage is opened"), std::string::npos) << lookout.errors();
  EXPECT_NE(lookout.errors().find("size is 640x480"), std::string::npos) << lookout.errors();
  EXPECT_NE(lookout.errors().find("fps is not 30: there is only size"), std::string::npos);
  EXPECT_EQ(lookout.errors().find("has no view"), std::string::npos);
}

TEST(Lookout, SaysThatAPluginHasNoStage) {
  const TcpRobot robot;
  Program lookout({"--plugins", FIXTURES "/good", "--robot", robot.address().toString(), "--stage",
                   "--quit-after", "1"});
  EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
  EXPECT_NE(lookout.errors().find("has no view \"stage\"; it has: none"), std::string::npos)
      << lookout.errors();
}

TEST(Lookout, FailsWhenThePictureCannotBeWritten) {
  const QTemporaryDir folder;
  const std::string file = folder.filePath(QString(300, 'x') + ".png").toStdString();
  Program lookout({"--plugins", FIXTURES "/good", "--screenshot", file, "--quit-after", "0"});
  EXPECT_EQ(lookout.waitForExit(), 1);
  EXPECT_NE(lookout.errors().find("cannot write"), std::string::npos);
}

TEST(Lookout, QuitsCleanlyOnCtrlC) {
  TcpRobot robot;
  Program lookout(
      {"--plugins", FIXTURES "/good", "--robot", robot.address().toString(), "--report"});
  ASSERT_TRUE(lookout.waitForErrorLine("connected to ")) << lookout.errors();
  lookout.signal(SIGINT);
  EXPECT_EQ(lookout.waitForExit(), 0) << lookout.errors();
  EXPECT_FALSE(lookout.output().empty());
}

TEST(Lookout, GoesOnAfterATerminationWhereItWas) {
  const TcpRobot robot;
  const auto home = std::make_shared<QTemporaryDir>();
  const std::vector<std::string> arguments = {"--plugins", FIXTURES "/remembering", "--robot",
                                              robot.address().toString()};
  Program first(home, arguments, {{"REMEMBERING_PLUGIN_USER", "yes"}});
  ASSERT_TRUE(first.waitForErrorLine("plays as 1")) << first.errors();
  first.signal(SIGTERM);
  EXPECT_EQ(first.waitForExit(), 0) << first.errors();

  Program second(home, arguments, {});
  EXPECT_TRUE(second.waitForErrorLine("plays as 1")) << second.errors();
  second.signal(SIGTERM);
  EXPECT_EQ(second.waitForExit(), 0) << second.errors();

  for (const char* script : {"--report", "--quit-after=60"}) {
    Program scripted(
        home, {"--plugins", FIXTURES "/remembering", "--robot", robot.address().toString(), script},
        {});
    ASSERT_TRUE(scripted.waitForErrorLine("connected to ")) << scripted.errors();
    scripted.signal(SIGTERM);
    EXPECT_EQ(scripted.waitForExit(), 0) << scripted.errors();
    EXPECT_EQ(scripted.errors().find("plays as"), std::string::npos) << scripted.errors();
  }
}

TEST(Lookout, QuitsCleanlyWhileItIsStillConnecting) {
  Program lookout({"--plugins", FIXTURES "/good", "--robot", "127.0.0.1:1"});
  ASSERT_TRUE(lookout.waitForErrorLine("nobody listens there")) << lookout.errors();
  lookout.signal(SIGTERM);
  EXPECT_EQ(lookout.waitForExit(), 0);
}
