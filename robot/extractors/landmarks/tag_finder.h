// SPDX-License-Identifier: Apache-2.0
// Finds landmarks, the squares that tagPicture() paints.
#pragma once

#include <array>
#include <memory>
#include <opencv2/core.hpp>
#include <vector>

struct apriltag_detector;
struct apriltag_family;

namespace robot {

struct Tag {
  int number = 0;
  cv::Point2d centre;                  // pixels, the corner of the first pixel is 0
  std::array<cv::Point2d, 4> corners;  // of the black square, around it
};

// Thread-bound. Finds a landmark turned and tilted any way, from about 20 pixels on.
class TagFinder {
 public:
  TagFinder();
  ~TagFinder();
  TagFinder(const TagFinder&) = delete;
  TagFinder& operator=(const TagFinder&) = delete;

  // `grey`: 8-bit, one channel.
  std::vector<Tag> find(const cv::Mat& grey);

 private:
  std::unique_ptr<apriltag_family, void (*)(apriltag_family*)> fFamily;
  std::unique_ptr<apriltag_detector, void (*)(apriltag_detector*)> fDetector;
};

}  // namespace robot
