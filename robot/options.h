// SPDX-License-Identifier: Apache-2.0
// What can be chosen when a robot is started.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "ky/address.h"

namespace robot {

struct FtpOptions {
  int port = 21;  // the only one that the viewer knows
  std::string user = "tam";
  std::optional<std::filesystem::path> passwordFile;
};

struct Options {
  Ky::KyAddress listen;
  std::array<std::string, 2> sources = {"generated", "generated"};
  int cameraModel = 1;
  std::filesystem::path home;
  // Folders of what the robot is taught to recognise; none: "logos" and "pictures" in its home.
  std::optional<std::filesystem::path> logos;
  std::optional<std::filesystem::path> pictures;
  std::optional<std::filesystem::path> keys;
  bool insecure = false;
  std::string encoder = "libx264";  // libavcodec's name of the one for pictures as H.264
  std::set<std::string> without;    // names of modules
  std::optional<FtpOptions> ftp;    // no server without
};

}  // namespace robot
