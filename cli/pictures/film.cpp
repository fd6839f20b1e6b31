// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/film.h"

#include <algorithm>

#include "cli/pictures/output_file.h"

namespace cli {
namespace {

// Between two pictures, in microseconds. More is no pause: the robot's clock was set.
constexpr std::int64_t kLongest = 3600LL * 1000000;

}  // namespace

void requireFilmName(const std::string& path) {
  requireEnding(path, {".mkv"});
}

Film::Film(const std::string& path, int fps) : fFile(path, fps), fFps(fps) {
}

void Film::add(const FedPicture& fed) {
  const Picture& picture = fed.picture;
  if (fed.isEncoded) {
    fEncoder.reset();
    write(picture.bytes, fed.isKey, picture);
    return;
  }
  // A new one begins with a key frame, behind whatever came before.
  if (!fEncoder || !fEncoder->fits(picture)) fEncoder.emplace(picture.width, picture.height, fFps);
  const FilmEncoder::Encoded encoded = fEncoder->encode(picture, false);
  write(encoded.bytes, encoded.isKey, picture);
}

void Film::write(const Ky::KyBinary& packet, bool isKey, const Picture& picture) {
  fFile.write(packet, isKey, picture.width, picture.height, timeOf(picture));
  fWidth = picture.width;
  fHeight = picture.height;
  ++fPictures;
}

std::int64_t Film::timeOf(const Picture& picture) {
  std::int64_t step = picture.time - fNewest;
  fNewest = picture.time;
  if (fPictures == 0) return 0;
  if (step <= 0 || step > kLongest) step = 1000000 / fFps;
  fMicroseconds += step;
  return fTime = std::max(fTime + 1, fMicroseconds / 1000);
}

}  // namespace cli
