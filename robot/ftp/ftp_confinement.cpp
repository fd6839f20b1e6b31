// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_confinement.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pwd.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "ky/error.h"

namespace robot {
namespace {

// Any but root's, whom pure-ftpd refuses.
constexpr uid_t kUidInside = 1;

// Root of a namespace made by a normal user is no root: it can't become anybody else.
bool canBecomeOthers() {
  std::string groups;
  std::ifstream("/proc/self/setgroups") >> groups;
  return geteuid() == 0 && groups == "allow";
}

int writeFile(const char* path, const char* text) {
  const int fd = open(path, O_WRONLY | O_CLOEXEC);
  if (fd < 0) return errno;
  const int error = write(fd, text, std::strlen(text)) < 0 ? errno : 0;
  close(fd);
  return error;
}

int mapOnly(const char* path, unsigned inside, unsigned outside) {
  std::array<char, 64> line{};
  std::snprintf(line.data(), line.size(), "%u %u 1\n", inside, outside);
  return writeFile(path, line.data());
}

int enterNamespace(uid_t uid, gid_t gid) {
  const uid_t ourUid = geteuid();
  const gid_t ourGid = getegid();
  // The system keeps these files from a program that was given rights of its own (setcap).
  prctl(PR_SET_DUMPABLE, 1);
  if (unshare(CLONE_NEWUSER) != 0) return errno;
  if (const int error = writeFile("/proc/self/setgroups", "deny")) return error;
  if (const int error = mapOnly("/proc/self/gid_map", gid, ourGid)) return error;
  return mapOnly("/proc/self/uid_map", uid, ourUid);
}

// Of all rights in the namespace, only that to change the root folder outlives exec().
int keepChrootOnly() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, 2> data{};
  constexpr std::uint32_t kChroot = 1U << CAP_SYS_CHROOT;
  data[0] = {kChroot, kChroot, kChroot};
  if (syscall(SYS_capset, &header, data.data()) != 0) return errno;
  const int raised = prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_RAISE, CAP_SYS_CHROOT, 0, 0);
  return raised != 0 ? errno : 0;
}

// pure-ftpd gives up at once when it can't set its groups, which nobody may in a namespace like
// this, and nobody needs to: there is only one. So the call succeeds and does nothing.
int ignoreSetgroups() {
  std::array<sock_filter, 4> steps = {
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_setgroups, 0, 1),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog program{steps.size(), steps.data()};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return errno;
  return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0 ? errno : 0;
}

int enterAndExit(const FtpConfinement& confinement) {
  const pid_t pid = fork();
  if (pid < 0) return errno;
  if (pid == 0) _exit(confinement.enter());
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : EINTR;
}

}  // namespace

FtpConfinement::FtpConfinement(const std::filesystem::path& home)
    : fUid(kUidInside), fGid(kUidInside), fInNamespace(!canBecomeOthers()) {
  struct stat folder {};
  if (stat(home.c_str(), &folder) != 0 || !S_ISDIR(folder.st_mode))
    throw Ky::KyError("the FTP server can't serve " + home.string() + ": there is no such folder");
  if (fInNamespace) {
    if (const int error = enterAndExit(*this))
      throw Ky::KyError(std::string("the FTP server can't lock its users into the robot's home: "
                                    "this system allows no user namespaces (") +
                        std::strerror(error) + "). Start the robot as root, or allow them.");
    return;
  }
  fUid = folder.st_uid;
  fGid = folder.st_gid;
  if (fUid != 0) return;
  const passwd* nobody = getpwnam("nobody");
  fUid = nobody != nullptr ? nobody->pw_uid : 65534;
  fGid = nobody != nullptr ? nobody->pw_gid : 65534;
  if ((folder.st_mode & (S_IROTH | S_IXOTH)) != (S_IROTH | S_IXOTH))
    throw Ky::KyError(
        "the FTP server can't serve " + home.string() +
        ": it is root's and closed to others. Run 'chmod o+rx' on it, or give it to a "
        "user other than root.");
}

int FtpConfinement::enter() const {
  if (!fInNamespace) return 0;
  if (const int error = enterNamespace(fUid, fGid)) return error;
  if (const int error = keepChrootOnly()) return error;
  return ignoreSetgroups();
}

}  // namespace robot
