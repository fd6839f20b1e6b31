// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_writer.h"

#include <sys/stat.h>

#include <cerrno>

#include "film/screen_planes.h"

namespace {

// The quickest there is: what that takes more of the disk, a desktop has rather than processors.
constexpr const char* kPreset = "ultrafast";

struct Effort {
  int quality;
  int threads;
};
constexpr Effort kUsual{22, 1};  // hardly to be told from the screen, but for its noise
constexpr Effort kHurried{28, 2};

QImage fitted(const QImage& image, QSize size) {
  const QImage converted = image.convertToFormat(QImage::Format_RGB32);
  return converted.size() == size ? converted : converted.copy(QRect(QPoint(), size));
}

}  // namespace

FilmWriter::FilmWriter(const std::string& path, QSize size, int fps)
    : fFile(path, fps), fClock(fps), fSize(size), fFps(fps) {
}

void FilmWriter::add(const FilmPicture& picture, bool isLate) {
  if (isLate && !fHurries) {
    fHurries = true;
    fEncoder.reset();
  }
  if (!fEncoder) openEncoder();
  const QImage image = fitted(picture.image, fSize);
  film::writePlanes(reinterpret_cast<const std::uint32_t*>(image.constBits()),
                    image.bytesPerLine() / std::ptrdiff_t{sizeof(std::uint32_t)}, *fFrame);
  fFile.write(fEncoder->encode(*fFrame), fSize.width(), fSize.height(),
              fClock.next(picture.microseconds));
  ++fPictures;
  requireThere();
}

void FilmWriter::finish() {
  fFile.finish();
}

// Another one may follow in the middle of a film.
void FilmWriter::openEncoder() {
  const Effort& effort = fHurries ? kHurried : kUsual;
  fEncoder.emplace(film::EncoderSettings{.width = fSize.width(),
                                         .height = fSize.height(),
                                         .fps = fFps,
                                         .look = film::Look::Screen,
                                         .preset = kPreset,
                                         .quality = effort.quality,
                                         .threads = effort.threads});
  fFrame = fEncoder->newFrame();
}

// The system writes on into a file that was deleted, and says nothing.
void FilmWriter::requireThere() const {
  struct stat ignored;
  if (stat(fFile.path().c_str(), &ignored) != 0) throw film::WriteError(fFile.path(), -errno);
}
