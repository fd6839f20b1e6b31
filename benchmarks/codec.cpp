// SPDX-License-Identifier: Apache-2.0
// What do pictures of a film cost to encode and to decode, and how good are they at which bit rate?
//
//   bench-codec FILM
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>
#include <vector>

#include "robot/camera/frame.h"
#include "robot/camera/pixels.h"
#include "robot/streaming/picture_encoder.h"
#include "targets.h"
#include "video/picture_decoder.h"

namespace {

constexpr int kPictures = 150;
constexpr int kFps = 30;

// As a camera takes them.
std::vector<cv::Mat> read(const char* path) {
  cv::VideoCapture film(path);
  std::vector<cv::Mat> pictures;
  for (cv::Mat picture; pictures.size() < kPictures && film.read(picture);)
    pictures.push_back(robot::fitToCanvas(picture.clone()));
  return pictures;
}

std::vector<Ky::KyBinary> recordsOf(const std::vector<cv::Mat>& pictures,
                                    const robot::ImageFormat& format) {
  std::vector<Ky::KyBinary> records;
  records.reserve(pictures.size());
  for (const cv::Mat& picture : pictures)
    records.push_back(robot::Frame(picture, 0, 0).pixels(format));
  return records;
}

double processorMs() {
  return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// The peak signal to noise ratio of the luminance, in decibels.
double likeness(const Ky::KyBinary& a, const Ky::KyBinary& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.size(); i += 2) {
    const double difference = a.data()[i] - b.data()[i];
    sum += difference * difference;
  }
  return 10 * std::log10(255.0 * 255.0 * static_cast<double>(a.size() / 2) / std::max(sum, 1.0));
}

// Means of a film's pictures.
struct Result {
  double encodeMs = 0;
  double decodeMs = 0;
  double likeness = 0;
  double bitRate = 0;
};

Result measure(const std::vector<Ky::KyBinary>& records, int resolution, int bitRate) {
  const cv::Size size = robot::sizeOf(resolution);
  robot::PictureEncoder encoder({{resolution, robot::kYuv422}, kFps, bitRate});
  Ky::PictureDecoder decoder;
  Result result;
  for (const Ky::KyBinary& record : records) {
    const double begin = processorMs();
    const Ky::KyBinary packet = encoder.encode(record, false).bytes;
    const double encoded = processorMs();
    const Ky::KyBinary decoded = decoder.decode(packet, size.width, size.height, robot::kYuv422);
    result.decodeMs += processorMs() - encoded;
    result.encodeMs += encoded - begin;
    result.likeness += likeness(decoded, record);
    result.bitRate += 8.0 * static_cast<double>(packet.size()) * kFps;
  }
  const double count = static_cast<double>(records.size());
  return {result.encodeMs / count, result.decodeMs / count, result.likeness / count,
          result.bitRate / count};
}

struct Row {
  int resolution;
  int bitRate;
  double leastLikeness;  // 0: whatever it is
};

constexpr Row kRows[] = {
    {1, 1000000, 0},  {1, 2000000, 0}, {2, 1000000, 0}, {2, 2000000, 39},
    {2, 5000000, 43}, {3, 2000000, 0}, {3, 5000000, 0},
};

int run(const char* path) {
  const std::vector<cv::Mat> pictures = read(path);
  if (pictures.empty()) {
    std::fprintf(stderr, "codec: \"%s\" is no film\n", path);
    return 1;
  }
  for (const Row& row : kRows) {
    const cv::Size size = robot::sizeOf(row.resolution);
    const std::vector<Ky::KyBinary> records = recordsOf(pictures, {row.resolution, robot::kYuv422});
    const Result result = measure(records, row.resolution, row.bitRate);
    std::printf(
        "%4d x %3d at %d Mbit/s: encoded in %.2f ms, decoded in %.2f ms, %.1f dB, %.2f "
        "Mbit/s used\n",
        size.width, size.height, row.bitRate / 1000000, result.encodeMs, result.decodeMs,
        result.likeness, result.bitRate / 1e6);
    const std::string what =
        " of 640 x 480 at " + std::to_string(row.bitRate / 1000000) + " Mbit/s";
    if (row.leastLikeness == 0) continue;
    bench::atLeast("dB" + what, result.likeness, row.leastLikeness);
    bench::atMost("ms to decode a picture" + what, result.decodeMs, 1.5);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench-codec FILM\n");
    return 2;
  }
  cv::setNumThreads(1);
  return run(argv[1]);
}
