// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/film_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <cstring>

#include "ky/error.h"

namespace robot {
namespace {

using Ky::KyError;

// What the library holds back before it writes, the head of the file, and the frame's share of the
// index at its end.
constexpr std::int64_t kHeldBack = 512 * 1024;
constexpr std::int64_t kIndexEntry = 32;
constexpr std::int64_t kAhead = 4;  // frames for which room is had at once

constexpr const char* kFull = "the robot's disk is full; free some room";

// No frame is larger: as many bytes as it has before it is compressed.
std::int64_t largestFrame(cv::Size size) {
  return std::int64_t{size.width} * size.height * 3 / 2;
}

std::int64_t allowedBytes() {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  return limit.rlim_cur > INT64_MAX ? INT64_MAX : static_cast<std::int64_t>(limit.rlim_cur);
}

}  // namespace

FilmFile::FilmFile(NewFile file, cv::Size size, int fps) : fFile(std::move(file)), fSize(size) {
  try {
    makeRoom();  // before the library writes what it can't say to have failed
    open(fps);
    makeRoom();  // which it gave back when it opened the file
  } catch (const std::exception& error) {
    fFile.discard();
    throw KyError("\"" + path() + "\" can't be recorded: " + error.what());
  }
}

FilmFile::~FilmFile() {
  finish();
}

// By the folder that was found to be in the home, wherever that is by now.
void FilmFile::open(int fps) {
  const std::string name = "/proc/self/fd/" + std::to_string(fFile.folder.get()) + "/" + fFile.name;
  if (!fWriter.open(name, cv::CAP_FFMPEG, cv::VideoWriter::fourcc('X', 'V', 'I', 'D'), fps, fSize))
    throw KyError("OpenCV can't write such a film here");
  fRoom = 0;
}

void FilmFile::write(const cv::Mat& picture) {
  makeRoom();
  fWriter.write(picture);
  ++fFrames;
}

void FilmFile::finish() {
  if (!fWriter.isOpened()) return;
  fWriter.release();
  // Gives the room back that was not needed.
  if (ftruncate(fFile.file.get(), bytes()) != 0) return;
}

void FilmFile::makeRoom() {
  const std::int64_t frame = largestFrame(fSize);
  const std::int64_t needed = bytes() + kHeldBack + frame + kIndexEntry * (fFrames + 1);
  if (needed <= fRoom || hasRoom(needed + kAhead * frame)) return;
  if (!hasRoom(needed)) throw KyError(kFull);
}

// The library keeps silent about a disk that is full; so we have the room set aside.
bool FilmFile::hasRoom(std::int64_t end) {
  if (end > allowedBytes()) return false;
  const bool isSetAside = fallocate(fFile.file.get(), FALLOC_FL_KEEP_SIZE, 0, end) == 0;
  if (!isSetAside && (errno != EOPNOTSUPP || !isLeft(end - bytes()))) return false;
  fRoom = end;
  return true;
}

// For file systems that can set nothing aside; some have no end to tell of either.
bool FilmFile::isLeft(std::int64_t wanted) const {
  struct statvfs disk {};
  if (fstatvfs(fFile.file.get(), &disk) != 0 || disk.f_blocks == 0) return true;
  return static_cast<std::int64_t>(disk.f_bavail * disk.f_frsize) >= wanted;
}

std::int64_t FilmFile::bytes() const {
  struct stat file {};
  return fstat(fFile.file.get(), &file) == 0 ? file.st_size : 0;
}

}  // namespace robot
