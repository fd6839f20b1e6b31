// SPDX-License-Identifier: Apache-2.0
// A client of a robot's files, and everything that it says, in order.
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>

#include "support/wait.h"
#include "tests/viewer/download/robot_files.h"
#include "viewer/download/ftp_client.h"

using Texts = std::vector<std::string>;

class Client : public testing::Test {
 protected:
  Client() {
    robot.write("clip.avi", "the film");
    robot.serve(0);
    target.open(QIODevice::WriteOnly);
    QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [this](int id, bool error) {
      static constexpr const char* kNames[] = {" nothing", " connect", " login", " get", " list"};
      heard.push_back(std::to_string(id) + kNames[ftp.currentCommand()] + (error ? " failed" : ""));
      errors.push_back(ftp.errorString().toStdString());
      refusals.push_back(ftp.refusal());
    });
  }
  int connectAndLogIn() {
    ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
    return ftp.login(RobotFiles::kUser, RobotFiles::kPassword);
  }
  bool waitForEnds(std::size_t count) {
    return waitUntil([&] { return heard.size() >= count; });
  }

  RobotFiles robot;
  FtpClient ftp;
  Texts heard;
  Texts errors;
  std::vector<int> refusals;
  QBuffer target;
};
