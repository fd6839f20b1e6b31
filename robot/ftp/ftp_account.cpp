// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_account.h"

#include <crypt.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "ky/error.h"
#include "robot/ftp/ftp_program.h"

namespace robot {
namespace {

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

void check(const std::string& user, const std::string& password) {
  if (user.empty() || user.size() > 32 || !std::all_of(user.begin(), user.end(), isNameCharacter))
    throw Ky::KyError("'" + user + "' can't be the FTP user: use 1 to 32 letters, digits, _ - .");
  const bool isClean = std::none_of(password.begin(), password.end(), [](char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
  });
  if (password.empty() || password.size() > 128 || !isClean)
    throw Ky::KyError(
        "the FTP password can't be used: it needs 1 to 128 bytes without control characters");
}

// SHA-512: what pure-pw would choose itself takes seconds at every login.
std::string hashOf(const std::string& password) {
  const std::unique_ptr<char, decltype(&std::free)> salt(crypt_gensalt_ra("$6$", 0, nullptr, 0),
                                                         &std::free);
  const auto data = std::make_unique<crypt_data>();
  const char* hash = salt ? crypt_r(password.c_str(), salt.get(), data.get()) : nullptr;
  if (hash == nullptr || hash[0] == '*')
    throw Ky::KyError(std::string("the FTP password can't be hashed: ") + std::strerror(errno));
  return hash;
}

std::filesystem::path makePrivateFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kyrobot-ftp-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr)
    throw Ky::KyError("no folder for the FTP server at " + name + ": " + std::strerror(errno));
  return name;
}

}  // namespace

FtpAccount::FtpAccount(const std::string& user, const std::string& password,
                       const std::filesystem::path& home, uid_t uid, gid_t gid) {
  check(user, password);
  const std::string hash = hashOf(password);
  fFolder = makePrivateFolder();
  try {
    // The home under a name that the line below can hold, whatever its own.
    std::filesystem::create_directory_symlink(std::filesystem::canonical(home), fFolder / "home");
    writeUsers(user + ":" + hash + ":" + std::to_string(uid) + ":" + std::to_string(gid) +
               "::" + (fFolder / "home").string() + "/./::::::::::::\n");
    makeDatabase();
  } catch (const std::filesystem::filesystem_error& error) {
    std::filesystem::remove_all(fFolder);
    throw Ky::KyError(std::string("the FTP account can't be made: ") + error.what());
  } catch (const Ky::KyError&) {
    std::filesystem::remove_all(fFolder);
    throw;
  }
}

FtpAccount::~FtpAccount() {
  std::error_code ignored;
  std::filesystem::remove_all(fFolder, ignored);
}

void FtpAccount::writeUsers(const std::string& line) const {
  std::ofstream file(fFolder / "users");
  file << line << std::flush;
  if (!file) throw Ky::KyError("the FTP account can't be written to " + fFolder.string());
}

void FtpAccount::makeDatabase() const {
  std::string words[] = {ftpProgram("pure-pw"), "mkdb", database(), "-f", fFolder / "users"};
  char* arguments[] = {words[0].data(), words[1].data(), words[2].data(),
                       words[3].data(), words[4].data(), nullptr};
  char* environment[] = {nullptr};
  pid_t pid = 0;
  int status = posix_spawn(&pid, arguments[0], nullptr, nullptr, arguments, environment);
  if (status == 0)
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
  if (status != 0 || !std::filesystem::exists(database()))
    throw Ky::KyError("pure-pw could not make the FTP account in " + fFolder.string());
}

}  // namespace robot
