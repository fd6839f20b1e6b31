// SPDX-License-Identifier: Apache-2.0
// Pictures as H.264, for links that can't carry them as they are.
#pragma once

#include <cstdint>
#include <string>

#include "film/libav.h"
#include "ky/binary.h"
#include "robot/camera/image_format.h"

namespace robot {

struct EncoderSettings {
  ImageFormat format;
  int fps = kMaxFps;             // pictures a second: what a picture may take of the bit rate
  int bitRate = 2000000;         // bits a second, see PictureEncoder::kMinBitRate
  std::string name = "libx264";  // libavcodec's name of an encoder for H.264
};

struct EncodedPicture {
  Ky::KyBinary bytes;  // one access unit, with start codes; a key frame brings all headers
  bool isKey = false;
};

// One picture in, one packet out, at once: no picture waits for a later one, and none but the first
// is a key frame unless it is asked for. Colour is encoded as 4:2:2, grey without chrominance. No
// picture takes more than its share of the bit rate and a tenth, not even a key frame, so that none
// takes long to send, as far as the coarsest fits; where much moves, together they take nearly all
// of it.
//
// Thread-bound. Every function may throw KyError; arguments that are refused change nothing.
class PictureEncoder {
 public:
  static constexpr int kMinBitRate = 50000;
  static constexpr int kMaxBitRate = 100000000;

  explicit PictureEncoder(const EncoderSettings& settings);

  // From the next picture on, and without a key frame.
  void setBitRate(int bitsPerSecond);
  // `pixels`: as they stand in an image record of the format.
  EncodedPicture encode(const Ky::KyBinary& pixels, bool wantsKey);

 private:
  EncoderSettings fSettings;
  film::CodecContext fContext;
  film::VideoFrame fFrame;
};

}  // namespace robot
