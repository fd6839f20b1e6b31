// SPDX-License-Identifier: Apache-2.0
// Pictures as H.264, for a film.
#pragma once

#include <cstdint>
#include <string>

#include "film/libav.h"
#include "ky/binary.h"

namespace film {

// What the pictures are, see newFrame().
enum class Look {
  Camera,  // 4:2:2, BT.601: as the robot's cameras have them
  Screen,  // 4:2:0, BT.709: every player shows these
};

struct EncoderSettings {
  int width = 0;  // even, as the height is for Look::Screen
  int height = 0;
  int fps = 30;  // about how many pictures come in a second
  Look look = Look::Camera;
  std::string preset = "veryfast";  // libx264's: how much it takes of the processor
  int quality = 18;                 // libx264's "crf": 0 to 51, 0 is the best
  int threads = 0;                  // 0: as many as there are cores
};

struct EncodedPicture {
  Ky::KyBinary bytes;  // an access unit with start codes; a key frame brings all headers
  bool isKey = false;
};

// Each picture is encoded at once. Thread-bound; every function may throw KyError.
class FilmEncoder {
 public:
  explicit FilmEncoder(const EncoderSettings& settings);

  // A frame to be filled with a picture that is encoded here.
  VideoFrame newFrame() const;
  // The first is a key frame, and then one every few seconds. The frame is no longer needed
  // afterwards.
  EncodedPicture encode(AVFrame& frame);

  bool fits(int width, int height) const;

 private:
  CodecContext fContext;
  std::int64_t fNumber = 0;
};

}  // namespace film
