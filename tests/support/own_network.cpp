// SPDX-License-Identifier: Apache-2.0
// own-network PROGRAM [ARGUMENT...]
//
// Runs a program with a network and mounts of its own, in which it is root and disturbs nobody:
// port 21 is free, and nothing but the loopback interface is there. Needs no rights. Where the
// system forbids that, the program runs without, and $PERISCOPE_NO_NETWORK tells it why.
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

void check(bool worked, const std::string& what) {
  if (!worked) throw std::runtime_error(what + ": " + std::strerror(errno));
}

void writeFile(const char* path, const std::string& text) {
  const int fd = open(path, O_WRONLY | O_CLOEXEC);
  check(fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()), path);
  close(fd);
}

void becomeRootOfOurOwn() {
  const std::string uid = std::to_string(geteuid());
  const std::string gid = std::to_string(getegid());
  check(unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWNS) == 0, "no namespaces");
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", "0 " + uid + " 1");
  writeFile("/proc/self/gid_map", "0 " + gid + " 1");
  check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "no mounts of our own");
}

void switchLoopbackOn() {
  const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP;
  check(ioctl(fd, SIOCSIFFLAGS, &request) == 0, "no loopback interface");
  close(fd);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: own-network PROGRAM [ARGUMENT...]\n");
    return 2;
  }
  try {
    becomeRootOfOurOwn();
    switchLoopbackOn();
  } catch (const std::exception& error) {
    setenv("PERISCOPE_NO_NETWORK", error.what(), 1);
  }
  execvp(argv[1], argv + 1);
  std::perror(argv[1]);
  return 1;
}
