// SPDX-License-Identifier: Apache-2.0
// Whatever a peer sends as a video packet becomes a picture of its size or a refusal, never a
// crash. The first byte of each input chooses size and colour space; the rest is packets, each
// after its length in two bytes, the more significant one first.
#include <algorithm>
#include <cstdlib>

#include "ky/error.h"
#include "ky/video_device_proxy.h"
#include "video/picture_decoder.h"

namespace {

void decode(Ky::PictureDecoder& decoder, const Ky::KyBinary& packet, std::uint8_t choice) {
  constexpr int kColorSpaces[] = {9, 10, 0, 11};
  const int colorSpace = kColorSpaces[choice % 4];
  const int width = 160 << choice / 4 % 4;
  const int height = 120 << choice / 4 % 4;
  try {
    const Ky::KyBinary pixels = decoder.decode(packet, width, height, colorSpace);
    if (pixels.size() != Ky::imageBytes(width, height, colorSpace)) std::abort();
  } catch (const Ky::KyError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t choice = *data++;
  --size;
  Ky::PictureDecoder decoder;
  while (size >= 2) {
    const std::size_t length = std::min<std::size_t>(data[0] << 8 | data[1], size - 2);
    decode(decoder, Ky::KyBinary::copyOf(data + 2, length), choice);
    data += 2 + length;
    size -= 2 + length;
  }
  return 0;
}
