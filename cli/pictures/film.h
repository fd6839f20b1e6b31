// SPDX-License-Identifier: Apache-2.0
// A robot's pictures as a film, at the times when they were taken.
#pragma once

#include <optional>
#include <string>

#include "cli/pictures/picture_feed.h"
#include "film/film_clock.h"
#include "film/film_encoder.h"
#include "film/film_file.h"

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
  std::int64_t duration() const { return fClock.newest(); }
  int width() const { return fWidth; }
  int height() const { return fHeight; }

 private:
  film::EncodedPicture encode(const Picture& picture);

  film::FilmFile fFile;
  film::FilmClock fClock;
  const int fFps;
  std::optional<film::FilmEncoder> fEncoder;  // while the pictures are exact
  int fPictures = 0;
  int fWidth = 0;
  int fHeight = 0;
};

}  // namespace cli
