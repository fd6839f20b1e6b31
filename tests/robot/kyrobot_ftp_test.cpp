// SPDX-License-Identifier: Apache-2.0
// The robot's FTP server, as people start it and as they fetch files from it.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <fstream>
#include <iterator>

#include "ky/proxy.h"
#include "kyrobot_process.h"
#include "support/own_network.h"

namespace {

constexpr const char* kServes = "kyrobot: FTP on ";

std::string contentOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string takePhoto(KyrobotProcess& robot) {
  const auto desktop = robot.connect();
  const auto path = desktop->getProxy("KyVisionToolbox")->call<std::string>("takePicture");
  desktop->shutdown();
  return path;
}

std::string fetched(const std::string& login, const std::string& place) {
  Process curl("curl", {"-s", "--noproxy", "*", "-u", login,
                        "ftp://" + place + "/recordings/cameras/photo.jpg"});
  curl.waitForExit();
  return curl.output();
}

// "127.0.0.1:21" of "kyrobot: FTP on 127.0.0.1:21, user tam, ..."
std::string placeIn(const std::string& line) {
  const auto begin = std::string(kServes).size();
  return line.substr(begin, line.find(',') - begin);
}

TEST(KyrobotFtp, ServesWhatWasRecordedOnThePortOfFtpWithTheLoginThatItPrints) {
  NEED_OWN_NETWORK();
  KyrobotProcess robot({"--port", "0", "--ftp"});
  const auto line = robot.process().waitForLine(kServes);
  ASSERT_TRUE(line) << robot.process().errors();
  const std::string lead = "kyrobot: FTP on 127.0.0.1:21, user tam, password ";
  ASSERT_EQ(line->rfind(lead, 0), 0u) << *line;
  const std::string password = line->substr(lead.size());
  EXPECT_EQ(password.size(), 12u);
  const std::string photo = contentOf(robot.onDisk(takePhoto(robot)));
  ASSERT_FALSE(photo.empty());
  EXPECT_TRUE(fetched("tam:" + password, "127.0.0.1") == photo);
  EXPECT_EQ(fetched("tam:wrong", "127.0.0.1"), "");
  EXPECT_EQ(robot.process().errors().find(password), std::string::npos) << "not in the log";
}

TEST(KyrobotFtp, MakesANewPasswordEachTime) {
  std::string lines[2];
  for (std::string& line : lines) {
    KyrobotProcess robot({"--port", "0", "--ftp", "--ftp-port", "0"});
    line = robot.process().waitForLine(kServes).value_or("");
    EXPECT_FALSE(line.empty()) << robot.process().errors();
    line.erase(0, line.rfind(' '));
  }
  EXPECT_NE(lines[0], lines[1]);
}

TEST(KyrobotFtp, TakesTheLoginThatItIsGivenAndKeepsItToItself) {
  const TestFolder folder;
  std::ofstream(folder / "password") << "open sesame\r\nand more\n";
  const struct {
    std::vector<std::string> options;
    Process::Environment environment;
  } ways[] = {{{"--ftp-password-file", folder / "password"}, {}},
              {{}, {{"KYROBOT_FTP_PASSWORD", "open sesame"}}},
              {{"--ftp-password-file", folder / "password"}, {{"KYROBOT_FTP_PASSWORD", "other"}}}};
  for (const auto& [more, environment] : ways) {
    std::vector<std::string> options{"--port", "0",          "--ftp", "--ftp-port",
                                     "0",      "--ftp-user", "ali"};
    options.insert(options.end(), more.begin(), more.end());
    KyrobotProcess robot(options, environment);
    const auto line = robot.process().waitForLine(kServes);
    ASSERT_TRUE(line) << robot.process().errors();
    EXPECT_NE(line->find(", user ali, password as given"), std::string::npos) << *line;
    const std::string photo = contentOf(robot.onDisk(takePhoto(robot)));
    EXPECT_TRUE(fetched("ali:open sesame", placeIn(*line)) == photo);
    const std::string shown =
        robot.process().output() + robot.process().errors() +
        contentOf("/proc/" + std::to_string(robot.process().pid()) + "/cmdline");
    EXPECT_EQ(shown.find("sesame"), std::string::npos);
  }
}

TEST(KyrobotFtp, IsNotStartedUnlessItIsWanted) {
  KyrobotProcess robot;
  robot.address();
  EXPECT_EQ(robot.process().output().find("FTP"), std::string::npos);
}

void expectToGoOnWithoutFtp(KyrobotProcess& robot, const std::string& reason) {
  EXPECT_FALSE(takePhoto(robot).empty()) << "the robot works";
  const auto line = robot.process().waitForErrorLine("kyrobot.ftp: ");
  ASSERT_TRUE(line);
  EXPECT_NE(line->find(reason), std::string::npos) << *line;
  EXPECT_NE(line->find("recordings can't be downloaded; they are in " +
                       (robot.folder().path() / "kyrobot").string()),
            std::string::npos)
      << *line;
  EXPECT_EQ(robot.process().output().find("FTP"), std::string::npos);
}

TEST(KyrobotFtp, TheRobotGoesOnWithoutItWhereItsPortIsTaken) {
  KyrobotProcess first({"--port", "0", "--ftp", "--ftp-port", "0"});
  const std::string place = placeIn(first.process().waitForLine(kServes).value());
  KyrobotProcess second({"--port", "0", "--ftp", "--ftp-port", place.substr(place.rfind(':') + 1)});
  expectToGoOnWithoutFtp(second, "another program has that port");
}

TEST(KyrobotFtp, TheRobotGoesOnWithoutItWhereTheServerIsNotInstalled) {
  NEED_OWN_NETWORK();
  if (mount("/dev/null", "/usr/sbin/pure-ftpd", nullptr, MS_BIND, nullptr) != 0)
    GTEST_SKIP() << "no mounts of our own";
  KyrobotProcess robot({"--port", "0", "--ftp"});
  expectToGoOnWithoutFtp(robot, "install Debian's package pure-ftpd");
}

TEST(KyrobotFtp, ItsPasswordFileMustBeThere) {
  const TestFolder folder;
  std::ofstream(folder / "empty") << "";
  std::ofstream(folder / "blank") << "\nsecret\n";
  const std::pair<std::string, std::string> files[] = {
      {"missing", "\" can't be read: No such file or directory"},
      {"", "\" can't be read: Is a directory"},
      {"empty", "\" is empty; write the password into its first line"},
      {"blank", "\" is empty; write the password into its first line"}};
  for (const auto& [name, reason] : files) {
    KyrobotProcess robot({"--port", "0", "--ftp", "--ftp-password-file", folder / name});
    EXPECT_EQ(robot.process().waitForExit(), 1);
    EXPECT_EQ(robot.process().errors(),
              "kyrobot: the FTP password file \"" + (folder / name) + reason + "\n");
  }
}

TEST(KyrobotFtp, ItsOptionsGoWithTheServerOnly) {
  for (const char* option : {"--ftp-port", "--ftp-user", "--ftp-password-file"}) {
    KyrobotProcess robot({"--port", "0", option, "1"});
    EXPECT_EQ(robot.process().waitForExit(), 2);
    EXPECT_EQ(robot.process().errors(),
              "kyrobot: " + std::string(option) + " requires --ftp\nTry \"kyrobot --help\".\n");
  }
}

}  // namespace
