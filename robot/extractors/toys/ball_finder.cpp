// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/toys/ball_finder.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "robot/extractors/toys/color_mask.h"

namespace robot {
namespace {

constexpr double kTuningWidth = 320;  // of the picture in which radii are given
constexpr std::int64_t kSecond = 1000000;

// The part of its circle that a ball must fill, by sensitivity.
constexpr double kLeastFill[] = {0.88, 0.80, 0.70, 0.58};

struct Candidate {
  Ball ball;
  double fill;
};

// How much of a circle the mask fills, 0 to 1; what lies outside the picture counts as empty.
double fillOf(const cv::Mat& mask, cv::Point2f centre, double radius) {
  const cv::Point middle(cvRound(centre.x), cvRound(centre.y));
  const int reach = cvCeil(radius);
  const cv::Rect box = cv::Rect(middle.x - reach, middle.y - reach, 2 * reach + 1, 2 * reach + 1) &
                       cv::Rect({0, 0}, mask.size());
  cv::Mat disc(box.size(), CV_8U, cv::Scalar(0));
  cv::circle(disc, middle - box.tl(), reach, 255, cv::FILLED);
  return cv::countNonZero(disc & mask(box)) / (CV_PI * radius * radius);
}

Candidate candidateOf(const cv::Mat& mask, const std::vector<cv::Point>& outline) {
  cv::Point2f centre;
  float radius = 0;
  cv::minEnclosingCircle(outline, centre, radius);
  // The outline runs through the middles of the outermost pixels. They reach half a pixel further,
  // but of them, which are of mixed colours, many are missing.
  const double scale = kTuningWidth / mask.cols;
  return {{(cv::Point2d(centre) + cv::Point2d(0.5, 0.5)) * scale,
           (static_cast<double>(radius) + 0.5) * scale},
          fillOf(mask, centre, static_cast<double>(radius))};
}

std::vector<Candidate> candidatesIn(const cv::Mat& mask, const BallTuning& tuning) {
  std::vector<std::vector<cv::Point>> outlines;
  cv::findContours(mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
  const double leastFill = kLeastFill[std::clamp(tuning.sensitivity, 1, 4) - 1];
  std::vector<Candidate> candidates;
  for (const auto& outline : outlines) {
    const Candidate candidate = candidateOf(mask, outline);
    if (candidate.fill >= leastFill && candidate.ball.radius >= tuning.smallest &&
        candidate.ball.radius <= tuning.largest)
      candidates.push_back(candidate);
  }
  return candidates;
}

}  // namespace

std::vector<Ball> BallFinder::find(const cv::Mat& yuv, std::int64_t time,
                                   const BallTuning& tuning) {
  cv::Mat picture = yuv;
  if (tuning.optimized) cv::resize(yuv, picture, {}, 0.5, 0.5, cv::INTER_NEAREST);
  cv::Mat mask = colorMask(picture, {tuning.y, tuning.u, tuning.v}, tuning.tolerance);
  if (!tuning.optimized) removeSpecks(mask);

  std::vector<Candidate> candidates = candidatesIn(mask, tuning);
  const auto worth = [](const Candidate& one) { return one.fill * one.ball.radius; };
  std::sort(candidates.begin(), candidates.end(),
            [&](const auto& a, const auto& b) { return worth(a) > worth(b); });
  std::vector<Ball> balls;
  balls.reserve(candidates.size());
  for (const Candidate& candidate : candidates) balls.push_back(candidate.ball);

  if (tuning.tracks) keepReachable(balls, time, tuning.maxShift);
  if (!tuning.several && balls.size() > 1) balls.resize(1);
  if (!balls.empty()) fLast = Seen{balls.front().centre, time};
  return balls;
}

void BallFinder::keepReachable(std::vector<Ball>& balls, std::int64_t time, int maxShift) const {
  if (!fLast || time - fLast->time >= kSecond || time < fLast->time) return;
  const double reach = static_cast<double>(maxShift) * static_cast<double>(time - fLast->time) /
                       static_cast<double>(kSecond);
  std::erase_if(balls,
                [&](const Ball& ball) { return cv::norm(ball.centre - fLast->centre) > reach; });
}

}  // namespace robot
