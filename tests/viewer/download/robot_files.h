// SPDX-License-Identifier: Apache-2.0
// A robot's home with files in it, and the FTP server for it.
#pragma once

#include <csignal>
#include <fstream>
#include <memory>
#include <string>

#include "robot/ftp/ftp_server.h"
#include "robot/test_folder.h"
#include "support/ftp_processes.h"

// Thread-bound.
class RobotFiles {
 public:
  static constexpr auto kUser = "tam";
  static constexpr auto kPassword = "s3cret-w0rd";

  RobotFiles() { std::filesystem::permissions(fHome.path(), std::filesystem::perms(0755)); }

  void write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories((fHome.path() / name).parent_path());
    std::ofstream(fHome.path() / name, std::ios::binary) << content;
  }
  // A file of zeros that takes no room.
  void writeZeros(const std::string& name, std::uintmax_t size) const {
    write(name, "");
    std::filesystem::resize_file(fHome.path() / name, size);
  }
  std::filesystem::path operator/(const std::string& name) const { return fHome.path() / name; }

  // With 0 on any port.
  void serve(int port) {
    fServer = std::make_unique<robot::FtpServer>(
        robot::FtpServerOptions{.listen = {.host = "127.0.0.1", .port = port},
                                .user = kUser,
                                .password = kPassword,
                                .home = fHome.path()});
  }
  void stopServing() { fServer.reset(); }
  int port() const { return fServer->address().port; }
  // To the processes of all sessions.
  static void signalSessions(int number) {
    for (const pid_t pid : ftpProcesses()) kill(pid, number);
  }

 private:
  TestFolder fHome;
  std::unique_ptr<robot::FtpServer> fServer;
};

inline std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}
