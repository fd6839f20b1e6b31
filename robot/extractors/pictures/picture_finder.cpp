// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_finder.h"

#include <algorithm>
#include <map>
#include <opencv2/calib3d.hpp>
#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>

namespace robot {
namespace {

constexpr float kClearlyBest = 0.75f;   // distance to the best match, as part of that to the second
constexpr double kTolerance = 3;        // pixels
constexpr int kFewestMatched = 10;      // features
constexpr double kSmallestShare = 0.3;  // of the clear matches, that must agree
constexpr double kSmallestSpread = 0.05;   // of the picture, that the matched features must span
constexpr double kSmallestArea = 20 * 20;  // pixels
constexpr double kSteepest = 4;            // ratio of opposite sides

struct Matches {
  std::vector<cv::Point2f> picture, scene;
};

// Pairs of features that are much more alike than any other two; each of the scene's at most once.
Matches clearMatches(const TaughtPicture& picture, const Features& scene) {
  std::vector<std::vector<cv::DMatch>> nearest;
  cv::BFMatcher(cv::NORM_L2).knnMatch(picture.features.descriptors, scene.descriptors, nearest, 2);
  std::map<int, cv::DMatch> best;
  for (const auto& pair : nearest) {
    if (pair.size() < 2 || pair[0].distance >= kClearlyBest * pair[1].distance) continue;
    const auto [entry, isNew] = best.try_emplace(pair[0].trainIdx, pair[0]);
    if (!isNew && pair[0].distance < entry->second.distance) entry->second = pair[0];
  }
  Matches matches;
  for (const auto& [train, match] : best) {
    matches.picture.push_back(picture.features.points[static_cast<std::size_t>(match.queryIdx)]);
    matches.scene.push_back(scene.points[static_cast<std::size_t>(train)]);
  }
  return matches;
}

// How much of the picture the agreeing features span.
double spreadOf(const Matches& matches, const std::vector<std::uint8_t>& agrees, cv::Size size) {
  std::vector<cv::Point2f> points;
  for (std::size_t i = 0; i < agrees.size(); ++i)
    if (agrees[i] != 0) points.push_back(matches.picture[i]);
  std::vector<cv::Point2f> hull;
  cv::convexHull(points, hull);
  return cv::contourArea(hull) / size.area();
}

Corners cornersOf(cv::Size size, const cv::Mat& homography) {
  const auto width = static_cast<float>(size.width), height = static_cast<float>(size.height);
  const std::vector<cv::Point2f> flat = {{0, 0}, {width, 0}, {width, height}, {0, height}};
  std::vector<cv::Point2f> seen;
  cv::perspectiveTransform(flat, seen, homography);
  return {seen[0], seen[1], seen[2], seen[3]};
}

bool isAlike(double a, double b) {
  return a < kSteepest * b && b < kSteepest * a;
}

}  // namespace

std::optional<FoundPicture> findPicture(const TaughtPicture& picture, const Features& scene,
                                        cv::Size size) {
  if (scene.points.size() < 2) return std::nullopt;
  const Matches matches = clearMatches(picture, scene);
  if (matches.scene.size() < kFewestMatched) return std::nullopt;
  std::vector<std::uint8_t> agrees;
  const cv::Mat homography =
      cv::findHomography(matches.picture, matches.scene, cv::RANSAC, kTolerance, agrees);
  if (homography.empty()) return std::nullopt;
  const int matched = cv::countNonZero(agrees);
  const FoundPicture found{cornersOf(picture.size, homography), matched};
  const bool isSure = matched >= kFewestMatched &&
                      matched >= kSmallestShare * static_cast<double>(agrees.size()) &&
                      spreadOf(matches, agrees, picture.size) >= kSmallestSpread;
  if (!isSure || !isPlausibleView(found.corners, size)) return std::nullopt;
  return found;
}

bool isPlausibleView(const Corners& corners, cv::Size size) {
  std::array<double, 4> sides{};
  cv::Point2f middle;
  for (std::size_t i = 0; i < 4; ++i) {
    const cv::Point2f side = corners[(i + 1) % 4] - corners[i];
    const cv::Point2f next = corners[(i + 2) % 4] - corners[(i + 1) % 4];
    if (!(side.cross(next) > 0)) return false;  // also when they are not numbers
    sides[i] = cv::norm(side);
    middle += corners[i] / 4;
  }
  return isAlike(sides[0], sides[2]) && isAlike(sides[1], sides[3]) &&
         cv::contourArea(corners) >= kSmallestArea &&
         cv::Rect2f({0, 0}, cv::Size2f(size)).contains(middle);
}

}  // namespace robot
