// SPDX-License-Identifier: Apache-2.0
// Who may fetch recordings from the robot.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace robot {

struct FtpLogin {
  std::string password;
  bool isGenerated = false;  // so that nobody knows it yet
};

// The password is the first line of the file where there is one, else what the environment variable
// KYROBOT_FTP_PASSWORD says, else a new one of 60 random bits. A command line would show it to
// everybody on this computer. Throws KyError when the file can't be read or begins with an empty
// line.
FtpLogin ftpLogin(const std::optional<std::filesystem::path>& passwordFile);

}  // namespace robot
