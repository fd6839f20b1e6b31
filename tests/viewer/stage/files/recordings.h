// SPDX-License-Identifier: Apache-2.0
// Photos and films as robots write them.
#pragma once

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <fstream>
#include <iterator>
#include <opencv2/videoio.hpp>
#include <string>

// A JPEG of one colour.
inline std::string photoOf(QColor colour, QSize size = {640, 480}) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(colour);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "jpeg", 95);
  return buffer.data().toStdString();
}

// A film that begins with this colour; every further picture is black.
inline std::string filmOf(QColor colour, int pictures = 5, const char* codec = "XVID",
                          cv::Size size = {320, 240}) {
  const QTemporaryDir folder;
  const std::string path = folder.filePath("film.avi").toStdString();
  {
    cv::VideoWriter writer(path, cv::CAP_FFMPEG,
                           cv::VideoWriter::fourcc(codec[0], codec[1], codec[2], codec[3]), 15,
                           size);
    const cv::Scalar bgr(colour.blue(), colour.green(), colour.red());
    for (int i = 0; i < pictures; ++i)
      writer.write(cv::Mat(size, CV_8UC3, i == 0 ? bgr : cv::Scalar()));
  }
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Whether both look the same, after they were compressed.
inline bool isLike(QColor a, QColor b) {
  return std::abs(a.red() - b.red()) < 12 && std::abs(a.green() - b.green()) < 12 &&
         std::abs(a.blue() - b.blue()) < 12;
}
