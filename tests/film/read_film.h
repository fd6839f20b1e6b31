// SPDX-License-Identifier: Apache-2.0
// What another program finds in a film.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "support/process.h"

struct FilmRead {
  int width = 0;
  int height = 0;
  std::vector<double> times;  // s, of the pictures that can be decoded
  std::string errors;
};

inline FilmRead readFilm(const std::string& file) {
  Process ffprobe("ffprobe", {"-v", "error", "-of", "csv=p=0", "-show_entries",
                              "stream=width,height:frame=pts_time", file});
  ffprobe.waitForExit();
  FilmRead film;
  film.errors = ffprobe.errors();
  std::istringstream lines(ffprobe.output());
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    char comma = 0;
    std::istringstream numbers(line);
    double first = 0;
    numbers >> first;
    if (numbers >> comma >> film.height)
      film.width = static_cast<int>(first);
    else
      film.times.push_back(first);
  }
  return film;
}

// The pixels of all its pictures, one after the other: red, green and blue as players show them.
inline std::string pixelsOfFilm(const std::string& file) {
  Process ffmpeg("ffmpeg",
                 {"-v", "error", "-i", file, "-vsync", "passthrough", "-sws_flags",
                  "accurate_rnd+full_chroma_int", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"});
  ffmpeg.waitForExit();
  return ffmpeg.output();
}
