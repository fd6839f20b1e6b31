// SPDX-License-Identifier: Apache-2.0
// Values as MessagePack (https://github.com/msgpack/msgpack), with large
// binaries beside the packed text instead of in it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "ky/value.h"

namespace Ky {

// One value on its way: the packed text and the binaries that it refers to by their index.
struct Parts {
  std::string text;
  std::vector<KyBinary> attachments;

  std::size_t bytes() const;
};

// A binary above this size travels as an attachment: an extension of type kAttachmentType whose
// four bytes are the attachment's index, big-endian.
constexpr std::size_t kInlineBytes = 4096;
constexpr int kAttachmentType = 1;

// Throws KyError when the value is beyond the limits.
Parts pack(const KyValue& value, const KyLimits& limits);

// The one value in `size` bytes of packed text. Throws KyError when the text is malformed, holds
// what a KyValue can't be, or is beyond the limits; allocates nothing before it is checked. Then
// `begun` gets what was read of the outermost array.
KyValue unpack(const char* text, std::size_t size, const std::vector<KyBinary>& attachments,
               const KyLimits& limits, KyValue::Array* begun = nullptr);

}  // namespace Ky
