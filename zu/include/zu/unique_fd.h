// SPDX-License-Identifier: Apache-2.0
// A file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace zu::os {

// Thread-bound.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : fFd(fd) {}
  ~UniqueFd() {
    if (fFd >= 0) close(fFd);
  }
  UniqueFd(UniqueFd&& other) noexcept : fFd(std::exchange(other.fFd, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    std::swap(fFd, other.fFd);
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;

  int get() const { return fFd; }

 private:
  int fFd;
};

}  // namespace zu::os
