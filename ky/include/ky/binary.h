// SPDX-License-Identifier: Apache-2.0
// A piece of memory that nobody changes any more, shared instead of copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Ky {

// Immutable: any thread may read it, copies share the bytes. An image stays one KyBinary from the
// camera to the socket and from the socket to the reader.
class KyBinary {
 public:
  KyBinary() = default;
  explicit KyBinary(std::vector<std::uint8_t> bytes);
  // Bytes that live inside something else; `owner` keeps them alive and unchanged.
  KyBinary(std::shared_ptr<const void> owner, const std::uint8_t* data, std::size_t size);
  static KyBinary copyOf(const void* data, std::size_t size);

  // Null when empty.
  const std::uint8_t* data() const { return fData; }
  std::size_t size() const { return fSize; }
  bool empty() const { return fSize == 0; }
  const std::shared_ptr<const void>& owner() const { return fOwner; }

  bool operator==(const KyBinary& other) const;

 private:
  std::shared_ptr<const void> fOwner;
  const std::uint8_t* fData = nullptr;
  std::size_t fSize = 0;
};

}  // namespace Ky
