// SPDX-License-Identifier: Apache-2.0
// A small film whose pictures become brighter one by one.
#pragma once

#include <opencv2/videoio.hpp>
#include <string>

inline void writeFilm(const std::string& path, int pictures, double fps,
                      cv::Size size = {160, 120}) {
  cv::VideoWriter writer(path, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'), fps, size);
  for (int i = 0; i < pictures; ++i) writer.write(cv::Mat(size, CV_8UC3, cv::Scalar::all(20 * i)));
}
