// SPDX-License-Identifier: Apache-2.0
// A film of H.264 in Matroska.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "film/film_encoder.h"
#include "ky/error.h"

struct AVFormatContext;

namespace film {

// What the system said when a film could not be written: "can't write 'PATH': REASON".
class WriteError : public Ky::KyError {
 public:
  WriteError(const std::string& path, int error);
  // As errno has it; what has no number there is EIO.
  int number() const { return fNumber; }

 private:
  int fNumber;
};

// Can be played wherever it ends: of a program that is killed the last second is missing, and the
// table of contents. Every function may throw WriteError. Thread-bound.
class FilmFile {
 public:
  // Opens nothing yet. `fps`: what players may expect.
  FilmFile(std::string path, int fps);
  // Finishes the film as well as it can.
  ~FilmFile();
  FilmFile(const FilmFile&) = delete;
  FilmFile& operator=(const FilmFile&) = delete;

  // The first picture is a key frame; it opens the file, in place of what is there. Times, in ms,
  // begin at 0 and grow.
  void write(const EncodedPicture& picture, int width, int height, std::int64_t time);
  void finish();

  const std::string& path() const { return fPath; }
  // How large it is, or was when it was finished.
  std::int64_t bytes() const { return fBytes; }

 private:
  struct Close {
    void operator()(AVFormatContext* context) const;
  };

  void open(const Ky::KyBinary& keyFrame, int width, int height);
  void require(int result) const;
  // All of it is in the file.
  void requireWritten(AVFormatContext& context);

  const std::string fPath;
  const int fFps;
  std::unique_ptr<AVFormatContext, Close> fContext;  // null before the first and after the last
  std::int64_t fBytes = 0;
};

}  // namespace film
