// SPDX-License-Identifier: Apache-2.0
// A robot's pictures as a film, at the times when they were taken.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/pictures/film_encoder.h"
#include "cli/pictures/film_file.h"
#include "cli/pictures/picture_feed.h"

namespace cli {

// Throws WrongUse for a name that does not end in ".mkv".
void requireFilmName(const std::string& path);

// Thread-bound; every function may throw KyError.
class Film {
 public:
  // As FilmFile.
  Film(const std::string& path, int fps);

  // What is encoded is taken as it is; the rest is encoded here.
  void add(const FedPicture& fed);
  void finish() { fFile.finish(); }

  int pictures() const { return fPictures; }
  // From the first picture to the last, in ms.
  std::int64_t duration() const { return fTime; }
  int width() const { return fWidth; }
  int height() const { return fHeight; }

 private:
  std::int64_t timeOf(const Picture& picture);
  void write(const Ky::KyBinary& packet, bool isKey, const Picture& picture);

  FilmFile fFile;
  const int fFps;
  std::optional<FilmEncoder> fEncoder;  // while the pictures are exact
  int fPictures = 0;
  std::int64_t fTime = 0;          // of the newest in the film, in ms
  std::int64_t fMicroseconds = 0;  // the same, not rounded
  std::int64_t fNewest = 0;        // by the robot's clock, in microseconds
  int fWidth = 0;
  int fHeight = 0;
};

}  // namespace cli
