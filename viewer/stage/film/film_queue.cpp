// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_queue.h"

#include <utility>

void FilmQueue::add(const FilmPicture& picture) {
  const std::size_t bytes = bytesOf(picture);
  const zu::MutexLock guard(fMutex);
  if (fEnd) return;
  if (!fPictures.empty() && fBytes + bytes > fMostBytes) {
    ++fDropped;
    return;
  }
  fPictures.push_back(picture);
  fBytes += bytes;
  fChanged.notifyOne();
}

std::optional<FilmPicture> FilmQueue::take() {
  const zu::MutexLock guard(fMutex);
  while (fPictures.empty() && !fEnd) fChanged.wait(fMutex);
  if (fEnd && Clock::now() >= *fEnd) dropAll();
  if (fPictures.empty()) return std::nullopt;
  FilmPicture picture = std::move(fPictures.front());
  fPictures.pop_front();
  fBytes -= bytesOf(picture);
  return picture;
}

void FilmQueue::close(Clock::time_point end) {
  const zu::MutexLock guard(fMutex);
  fEnd = end;
  fChanged.notifyOne();
}

bool FilmQueue::isFilling() const {
  const zu::MutexLock guard(fMutex);
  return fBytes > fMostBytes / 2;
}

int FilmQueue::dropped() const {
  const zu::MutexLock guard(fMutex);
  return fDropped;
}

std::size_t FilmQueue::bytesOf(const FilmPicture& picture) {
  return static_cast<std::size_t>(picture.image.sizeInBytes());
}

void FilmQueue::dropAll() {
  fDropped += static_cast<int>(fPictures.size());
  fPictures.clear();
  fBytes = 0;
}
