// SPDX-License-Identifier: Apache-2.0
// Exact pictures as H.264, for a film.
#pragma once

#include "cli/pictures/picture.h"

namespace cli {

// Nearly as good as the pictures: there is room on a disk. Each is encoded at once. Thread-bound;
// every function may throw KyError.
class FilmEncoder {
 public:
  // For pictures of this size. `fps`: about how many come in a second.
  FilmEncoder(int width, int height, int fps);

  struct Encoded {
    Ky::KyBinary bytes;  // an access unit with start codes; a key frame brings all headers
    bool isKey = false;
  };
  // The first is a key frame, and then one every few seconds.
  Encoded encode(const Picture& picture, bool wantsKey);

  bool fits(const Picture& picture) const;

 private:
  CodecContext fContext;
  std::int64_t fNumber = 0;
};

}  // namespace cli
