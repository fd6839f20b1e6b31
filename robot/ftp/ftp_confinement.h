// SPDX-License-Identifier: Apache-2.0
// How an FTP session is locked into the folder that it serves.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace robot {

// pure-ftpd locks a session into its folder and gives up root's rights, which it must have for
// that. Where we can't give it root's, the session gets a user namespace of its own, in which it
// may change its root folder and nothing else. Immutable.
class FtpConfinement {
 public:
  // Throws KyError when `home` is no folder that a session could read, or the system allows
  // neither.
  explicit FtpConfinement(const std::filesystem::path& home);

  // What a session becomes, as it sees it itself.
  uid_t uid() const { return fUid; }
  gid_t gid() const { return fGid; }

  // In a process that has just been forked: what must be done before pure-ftpd takes over. The
  // number of the error, or 0. Safe between fork() and exec().
  int enter() const;

 private:
  uid_t fUid;
  gid_t fGid;
  bool fInNamespace;
};

}  // namespace robot
