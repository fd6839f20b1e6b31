// SPDX-License-Identifier: Apache-2.0
// Bytes that end right before memory that nobody may touch: a step too far ends the test program.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

class GuardedBytes {
 public:
  explicit GuardedBytes(std::size_t size) : fSize(size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    fMapped = (size / page + 3) * page;  // a forbidden page on either side
    fBase = static_cast<std::uint8_t*>(
        mmap(nullptr, fMapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(fBase, page, PROT_NONE);
    mprotect(fBase + fMapped - page, page, PROT_NONE);
    fData = fBase + fMapped - page - size;
  }
  ~GuardedBytes() { munmap(fBase, fMapped); }
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;

  std::uint8_t* data() { return fData; }
  std::size_t size() const { return fSize; }
  void fill(int byte) { std::memset(fData, byte, fSize); }
  // The 32-bit pixel at a place counted in pixels.
  std::uint32_t pixel(std::size_t index) const {
    std::uint32_t value = 0;
    std::memcpy(&value, fData + index * 4, sizeof value);
    return value;
  }

 private:
  std::size_t fSize;
  std::size_t fMapped = 0;
  std::uint8_t* fBase = nullptr;
  std::uint8_t* fData = nullptr;
};
