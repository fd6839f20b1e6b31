// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_session.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

#include "robot/ftp/ftp_confinement.h"

namespace robot {
namespace {

// Only what is allowed between fork() and exec().
[[noreturn]] void becomeServer(char* const* arguments, const FtpConfinement& confinement,
                               int socket, pid_t parent) {
  if (confinement.enter() != 0) _exit(127);
  // After the change of rights, which would undo it.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(127);
  std::signal(SIGPIPE, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  dup2(socket, STDIN_FILENO);
  dup2(socket, STDOUT_FILENO);
  dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  char* environment[] = {nullptr};
  execve(arguments[0], arguments, environment);
  _exit(127);
}

}  // namespace

pid_t startFtpSession(const std::vector<std::string>& command, const FtpConfinement& confinement,
                      int socket) {
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t pid = fork();
  if (pid == 0) becomeServer(arguments.data(), confinement, socket, parent);
  return pid;
}

}  // namespace robot
