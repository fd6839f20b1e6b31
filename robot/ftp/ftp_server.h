// SPDX-License-Identifier: Apache-2.0
// The robot's home, for people to fetch recordings from.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "ky/address.h"
#include "robot/ftp/ftp_account.h"
#include "robot/ftp/ftp_confinement.h"
#include "zu/unique_fd.h"

namespace robot {

struct FtpServerOptions {
  Ky::KyAddress listen{.host = "127.0.0.1", .port = 21};  // the viewer knows port 21 only
  std::string user;                                       // 1 to 32 letters, digits and _ - .
  std::string password;  // 1 to 128 bytes without control characters
  std::filesystem::path home;
};

// Serves one folder to one account: a socket of ours, and behind it a process of Debian's pure-ftpd
// for each connection (at most kMaxSessions at once), locked into the folder. Needs nothing under
// /etc and no account of the system, and leaves nothing behind. FTP says everything in the clear,
// the password too: beyond loopback it belongs on networks that you trust.
//
// As a normal user it reads and writes what that user may. As root a session becomes the owner of
// the folder, or "nobody" where that is root, and reads what is open to everybody.
//
// Thread-bound. Listens from construction to destruction, which ends the running sessions. Sessions
// are killed with the process too; a logged-in one of root's leaves when its client does.
class FtpServer {
 public:
  static constexpr std::size_t kMaxSessions = 16;

  // Throws KyError that says what to do: pure-ftpd is not installed, the port is taken or not
  // allowed, the folder can't be served, the system allows no confinement, name or password unfit.
  explicit FtpServer(const FtpServerOptions& options);
  ~FtpServer();
  FtpServer(const FtpServer&) = delete;
  FtpServer& operator=(const FtpServer&) = delete;

  // Where it listens, with the real port.
  const Ky::KyAddress& address() const { return fAddress; }

 private:
  struct Session {
    pid_t pid;
    zu::os::UniqueFd ended;  // readable once the process has
  };

  void serve(const std::stop_token& stop);
  void welcome();
  void start(zu::os::UniqueFd client);
  void forgetEnded();

  Ky::KyAddress fAddress;
  FtpConfinement fConfinement;
  FtpAccount fAccount;
  std::vector<std::string> fCommand;
  zu::os::UniqueFd fListening;
  zu::os::UniqueFd fWakeUp;
  std::vector<Session> fSessions;  // the thread's
  std::jthread fThread;
};

}  // namespace robot
