// SPDX-License-Identifier: Apache-2.0
// What was on the screen, as a film.
#pragma once

#include <QSize>
#include <optional>
#include <string>

#include "film/film_clock.h"
#include "film/film_encoder.h"
#include "film/film_file.h"
#include "film/libav.h"
#include "viewer/stage/film/film_queue.h"

// Matroska with H.264 that every player shows. Takes little of the processor. Thread-bound; every
// function may throw Ky::KyError.
class FilmWriter {
 public:
  // Opens nothing yet. `size`: even.
  FilmWriter(const std::string& path, QSize size, int fps);

  // A picture of another size is cut or has black around it. `isLate`: too many wait behind it;
  // from here on they are made more quickly, and coarser.
  void add(const FilmPicture& picture, bool isLate);
  void finish();

  int pictures() const { return fPictures; }
  // From the first picture to the last, in ms.
  std::int64_t duration() const { return fClock.newest(); }
  std::int64_t bytes() const { return fFile.bytes(); }

 private:
  void openEncoder();
  void requireThere() const;

  film::FilmFile fFile;
  film::FilmClock fClock;
  const QSize fSize;
  const int fFps;
  bool fHurries = false;
  std::optional<film::FilmEncoder> fEncoder;
  film::VideoFrame fFrame;  // what the encoder is given, again and again
  int fPictures = 0;
};
