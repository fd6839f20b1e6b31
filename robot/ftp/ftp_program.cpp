// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_program.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>

#include "ky/error.h"

namespace robot {

std::string ftpProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path == nullptr ? "" : path) + ":/usr/sbin:/usr/bin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (!folder.starts_with('/')) continue;
    folder.append("/").append(name);
    if (access(folder.c_str(), X_OK) == 0) return folder;
  }
  throw Ky::KyError("the FTP server needs the program " + name +
                    ", which is not installed: install Debian's package pure-ftpd");
}

}  // namespace robot
