// SPDX-License-Identifier: Apache-2.0
// What players find in a film.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/videoio.hpp>
#include <ostream>
#include <sstream>
#include <string>

#include "support/process.h"

struct FilmFacts {
  int width = 0;
  int height = 0;
  double fps = 0;
  int frames = 0;    // as its head says
  int pictures = 0;  // that can be decoded

  bool operator==(const FilmFacts&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const FilmFacts& facts) {
  return out << facts.width << "x" << facts.height << ", " << facts.fps << " fps, " << facts.frames
             << " frames, " << facts.pictures << " pictures";
}

inline FilmFacts factsByOpenCv(const std::string& path) {
  cv::VideoCapture film(path, cv::CAP_FFMPEG);
  if (!film.isOpened()) return {};
  FilmFacts facts{static_cast<int>(film.get(cv::CAP_PROP_FRAME_WIDTH)),
                  static_cast<int>(film.get(cv::CAP_PROP_FRAME_HEIGHT)), film.get(cv::CAP_PROP_FPS),
                  static_cast<int>(std::lround(film.get(cv::CAP_PROP_FRAME_COUNT))), 0};
  while (film.grab()) ++facts.pictures;
  return facts;
}

inline FilmFacts factsByFfprobe(const std::string& path) {
  Process ffprobe("ffprobe", {"-v", "error", "-count_frames", "-of", "csv=p=0", "-show_entries",
                              "stream=width,height,r_frame_rate,nb_frames,nb_read_frames", path});
  ffprobe.waitForExit();
  EXPECT_EQ(ffprobe.errors(), "") << path;
  std::istringstream line(ffprobe.output());
  FilmFacts facts;
  char comma = 0;
  double over = 1;
  line >> facts.width >> comma >> facts.height >> comma >> facts.fps >> comma >> over >> comma >>
      facts.frames >> comma >> facts.pictures;
  facts.fps /= over;
  return facts;
}

// Whether both players find a complete film like this.
inline void expectFilm(const std::string& path, int width, int height, double fps, int frames) {
  const FilmFacts expected{width, height, fps, frames, frames};
  EXPECT_EQ(factsByOpenCv(path), expected) << path;
  EXPECT_EQ(factsByFfprobe(path), expected) << path;
}
