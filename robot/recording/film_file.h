// SPDX-License-Identifier: Apache-2.0
// A film on the disk.
#pragma once

#include <cstdint>
#include <opencv2/videoio.hpp>
#include <string>

#include "robot/recording/home_folder.h"

namespace robot {

// An AVI file with MPEG-4 pictures ("XVID"), which grows beyond 2 and 4 GiB where it must. Room on
// the disk is had before it is used: when there is no more, the film ends with what it has and is
// complete.
//
// Thread-bound: it may be made on one thread and used on another.
class FilmFile {
 public:
  // Throws KyError when there is no room, or no way to write such a film; the file is gone then.
  FilmFile(NewFile file, cv::Size size, int fps);
  // Finishes it.
  ~FilmFile();
  FilmFile(const FilmFile&) = delete;
  FilmFile& operator=(const FilmFile&) = delete;

  // `picture`: 8-bit BGR of the film's size. Throws KyError when there is no room for it.
  void write(const cv::Mat& picture);
  // Writes what makes it complete. Nothing can be written to it then.
  void finish();

  int frames() const { return fFrames; }
  const std::string& path() const { return fFile.path; }

 private:
  void open(int fps);
  void makeRoom();
  bool hasRoom(std::int64_t end);
  bool isLeft(std::int64_t wanted) const;
  std::int64_t bytes() const;

  NewFile fFile;
  cv::Size fSize;
  cv::VideoWriter fWriter;
  int fFrames = 0;
  std::int64_t fRoom = 0;  // bytes that the file may have without asking again
};

}  // namespace robot
