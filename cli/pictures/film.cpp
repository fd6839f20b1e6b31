// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/film.h"

#include "cli/pictures/output_file.h"

namespace cli {

void requireFilmName(const std::string& path) {
  requireEnding(path, {".mkv"});
}

Film::Film(const std::string& path, int fps) : fFile(path, fps), fClock(fps), fFps(fps) {
}

void Film::add(const FedPicture& fed) {
  const Picture& picture = fed.picture;
  if (fed.isEncoded) fEncoder.reset();
  const film::EncodedPicture encoded =
      fed.isEncoded ? film::EncodedPicture{picture.bytes, fed.isKey} : encode(picture);
  fFile.write(encoded, picture.width, picture.height, fClock.next(picture.time));
  fWidth = picture.width;
  fHeight = picture.height;
  ++fPictures;
}

// Nearly as good as the picture: there is room on a disk.
film::EncodedPicture Film::encode(const Picture& picture) {
  // A new encoder begins with a key frame, behind whatever came before.
  if (!fEncoder || !fEncoder->fits(picture.width, picture.height))
    fEncoder.emplace(
        film::EncoderSettings{.width = picture.width, .height = picture.height, .fps = fFps});
  return fEncoder->encode(*planesOf(picture));
}

}  // namespace cli
