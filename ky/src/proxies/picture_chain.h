// SPDX-License-Identifier: Apache-2.0
// The pictures of a stream that come as H.264.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ky/value.h"
#include "video/picture_decoder.h"

namespace Ky {

// Each packet but a key frame needs the one before. A packet that is missing or can't be decoded
// breaks the chain; it has no more pictures then before restart(). Thread-bound.
class PictureChain {
 public:
  // The image record of ["h264", record with a packet, number, is it a key frame, bit rate];
  // nothing where it brings none: one that was there already, or the chain is broken.
  std::optional<KyValue> picture(const KyValue& item);
  // Why the chain is broken; empty while it is not.
  const std::string& broken() const { return fBroken; }
  // Begins with the first packet of another stream.
  void restart();

 private:
  KyValue decode(const KyValue& record, std::int64_t number, bool isKey);

  std::unique_ptr<PictureDecoder> fDecoder;  // made for the first packet
  std::int64_t fNumber = 0;                  // of the last packet
  std::string fBroken;
};

}  // namespace Ky
