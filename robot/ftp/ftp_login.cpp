// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_login.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>

#include "ky/error.h"

namespace robot {
namespace {

std::string firstLineOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  if (!std::getline(stream, line) && !stream.eof())
    throw Ky::KyError("the FTP password file \"" + file.string() +
                      "\" can't be read: " + std::strerror(errno));
  if (line.ends_with('\r')) line.pop_back();
  if (line.empty())
    throw Ky::KyError("the FTP password file \"" + file.string() +
                      "\" is empty; write the password into its first line");
  return line;
}

std::string generated() {
  // 32 of them, without those that look alike.
  constexpr char kLetters[] = "abcdefghijkmnpqrstuvwxyz23456789";
  std::random_device random;
  std::string password;
  for (int i = 0; i < 12; ++i) password += kLetters[random() % 32];
  return password;
}

}  // namespace

FtpLogin ftpLogin(const std::optional<std::filesystem::path>& passwordFile) {
  if (passwordFile) return {firstLineOf(*passwordFile)};
  const char* given = std::getenv("KYROBOT_FTP_PASSWORD");
  if (given != nullptr && *given != '\0') return {given};
  return {generated(), true};
}

}  // namespace robot
