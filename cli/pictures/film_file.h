// SPDX-License-Identifier: Apache-2.0
// A film of H.264 in Matroska.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ky/binary.h"

struct AVFormatContext;

namespace cli {

// Can be played wherever it ends: of a program that is killed the last second is missing, and the
// table of contents. Every function may throw KyError. Thread-bound.
class FilmFile {
 public:
  // Opens nothing yet. `fps`: what players may expect.
  FilmFile(std::string path, int fps);
  // Finishes the film as well as it can.
  ~FilmFile();
  FilmFile(const FilmFile&) = delete;
  FilmFile& operator=(const FilmFile&) = delete;

  // One picture: an access unit with start codes. The first is a key frame with all headers; it
  // opens the file, in place of what is there. Times, in ms, begin at 0 and grow.
  void write(const Ky::KyBinary& packet, bool isKey, int width, int height, std::int64_t time);
  void finish();

 private:
  struct Close {
    void operator()(AVFormatContext* context) const;
  };

  void open(const Ky::KyBinary& keyFrame, int width, int height);
  void require(int result) const;

  const std::string fPath;
  const int fFps;
  std::unique_ptr<AVFormatContext, Close> fContext;  // null before the first and after the last
};

}  // namespace cli
