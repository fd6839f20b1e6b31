// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/duck_finder.h"

#include <opencv2/imgproc.hpp>
#include <optional>

#include "robot/extractors/toys/color_mask.h"

namespace robot {
namespace {

const cv::Vec3i kYellow(198, 42, 157), kOrange(136, 69, 193);
constexpr int kTolerance = 26;

constexpr double kLeastArea = 0.002;                       // of the picture
constexpr double kSmallestHead = 0.4, kLargestHead = 1.0;  // of the body's radius
constexpr double kNeck = 0.6;       // of the body's radius, from its centre up to the head's
constexpr double kBeakReach = 2.0;  // of the head's radius
constexpr double kSmallestBeak = 0.04, kLargestBeak = 0.5;  // of the head's area

struct Disc {
  cv::Point2d centre;  // pixel coordinates, the middle of the first pixel is 0
  double radius = 0;
};

// The largest disc inside a shape.
Disc largestDisc(const cv::Mat& shape) {
  cv::Mat distance;
  cv::copyMakeBorder(shape, distance, 1, 1, 1, 1, cv::BORDER_CONSTANT, 0);
  cv::distanceTransform(distance, distance, cv::DIST_L2, cv::DIST_MASK_PRECISE);
  double radius = 0;
  cv::Point at;
  cv::minMaxLoc(distance, nullptr, &radius, nullptr, &at);
  return {at - cv::Point(1, 1), radius};
}

cv::Mat without(const cv::Mat& shape, const Disc& disc) {
  cv::Mat rest = shape.clone();
  cv::circle(rest, disc.centre, cvCeil(disc.radius), 0, cv::FILLED);
  return rest;
}

bool isHeadOf(const Disc& head, const Disc& body) {
  const double size = head.radius / body.radius;
  return size >= kSmallestHead && size <= kLargestHead &&
         body.centre.y - head.centre.y >= kNeck * body.radius;
}

bool hasBeak(const cv::Mat& orange, const Disc& head) {
  cv::Mat around(orange.size(), CV_8U, cv::Scalar(0));
  cv::circle(around, head.centre, cvCeil(kBeakReach * head.radius), 255, cv::FILLED);
  const double size = cv::countNonZero(around & orange) / (CV_PI * head.radius * head.radius);
  return size >= kSmallestBeak && size <= kLargestBeak;
}

// `shape`: one yellow thing, in a picture of its own; `orange`: what is orange there.
std::optional<Duck> duckIn(const cv::Mat& shape, const cv::Mat& orange) {
  const Disc body = largestDisc(shape);
  const Disc head = largestDisc(without(shape, body));
  if (!isHeadOf(head, body) || !hasBeak(orange, head)) return std::nullopt;
  const cv::Point2d half(0.5, 0.5);
  return Duck{head.centre + half, head.radius, body.centre + half,
              cv::boundingRect(without(shape, head))};
}

// With room for a beak.
cv::Rect surroundingsOf(const cv::Rect& box, cv::Size picture) {
  const int room = std::max(box.width, box.height) / 2;
  return cv::Rect(box.x - room, box.y - room, box.width + 2 * room, box.height + 2 * room) &
         cv::Rect({0, 0}, picture);
}

}  // namespace

std::vector<Duck> findDucks(const cv::Mat& yuv) {
  cv::Mat yellow = colorMask(yuv, kYellow, kTolerance);
  const cv::Mat orange = colorMask(yuv, kOrange, kTolerance);
  removeSpecks(yellow);
  std::vector<std::vector<cv::Point>> outlines;
  cv::findContours(yellow, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
  std::vector<Duck> ducks;
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    if (cv::contourArea(outlines[i]) < kLeastArea * static_cast<double>(yuv.total())) continue;
    const cv::Rect area = surroundingsOf(cv::boundingRect(outlines[i]), yuv.size());
    cv::Mat shape(area.size(), CV_8U, cv::Scalar(0));
    cv::drawContours(shape, outlines, static_cast<int>(i), 255, cv::FILLED, cv::LINE_8,
                     cv::noArray(), 0, -area.tl());
    if (auto duck = duckIn(shape, orange(area))) {
      const cv::Point2d corner = area.tl();
      duck->head += corner;
      duck->body += corner;
      duck->bodyBox += corner;
      ducks.push_back(*duck);
    }
  }
  return ducks;
}

}  // namespace robot
