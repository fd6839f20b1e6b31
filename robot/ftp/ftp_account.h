// SPDX-License-Identifier: Apache-2.0
// The only account of the FTP server, known to it alone.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace robot {

// Its files stand in a private folder that is gone with it; of the password they hold a salted
// hash, and no program is ever told it. Thread-bound.
class FtpAccount {
 public:
  // Throws KyError: user or password unfit, or the files can't be made. `uid` and `gid` are what a
  // session becomes.
  FtpAccount(const std::string& user, const std::string& password,
             const std::filesystem::path& home, uid_t uid, gid_t gid);
  ~FtpAccount();
  FtpAccount(const FtpAccount&) = delete;
  FtpAccount& operator=(const FtpAccount&) = delete;

  // What pure-ftpd reads.
  std::filesystem::path database() const { return fFolder / "users.pdb"; }

 private:
  void writeUsers(const std::string& line) const;
  void makeDatabase() const;

  std::filesystem::path fFolder;
};

}  // namespace robot
