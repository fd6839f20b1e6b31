// SPDX-License-Identifier: Apache-2.0
// Pictures of something flat as a camera may see it.
#pragma once

#include <cmath>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <ostream>

// What may differ from view to view; each view draws its own within these limits.
struct View {
  double turn = 0;   // degrees, either way
  double tilt = 0;   // degrees away from the camera, in any direction
  double scale = 1;  // the smallest
  double noise = 0;  // standard deviation, grey levels
  double blur = 0;   // standard deviation, pixels
  double shade = 0;  // how much of the light one side may lack
};

// What detectors of flat things have to cope with.
struct ViewRow {
  const char* name;
  View view;
};

// Among the tests' names.
inline void PrintTo(const ViewRow& row, std::ostream* out) {
  *out << row.name;
}

inline constexpr ViewRow kViewRows[] = {
    {"plain", {}},
    {"turned", {.turn = 180}},
    {"tilted", {.tilt = 45}},
    {"small", {.scale = 0.25}},
    {"noisy", {.noise = 20}},
    {"blurred", {.blur = 3}},
    {"shaded", {.shade = 0.8}},
    {"everything", {180, 45, 0.25, 10, 1.2, 0.6}},
};

struct SeenFlat {
  cv::Mat picture;         // BGR
  cv::Matx33d homography;  // from the flat thing's pixels to the picture's

  cv::Point2d at(cv::Point2d point) const {
    const cv::Vec3d seen = homography * cv::Vec3d(point.x, point.y, 1);
    return {seen[0] / seen[2], seen[1] / seen[2]};
  }
};

// At scale 1 a pixel of the flat thing is one of the picture, which has 640 x 480 and is of one
// grey around it.
class ViewCamera {
 public:
  explicit ViewCamera(int seed) : fRandom(static_cast<std::uint64_t>(seed)) {}

  // `flat`: grey.
  SeenFlat take(const cv::Mat& flat, const View& view) {
    const cv::Matx33d pose = poseFor(view, flat.size());
    cv::Mat grey(kSize, CV_8U, cv::Scalar(fRandom.uniform(60, 190)));
    cv::warpPerspective(flat, grey, pose, kSize, cv::INTER_AREA, cv::BORDER_TRANSPARENT);
    if (view.shade > 0) shade(grey, view.shade);
    if (view.blur > 0) cv::GaussianBlur(grey, grey, {}, fRandom.uniform(0.3, 1.0) * view.blur);
    if (view.noise > 0) addNoise(grey, view.noise);
    cv::Mat picture;
    cv::cvtColor(grey, picture, cv::COLOR_GRAY2BGR);
    return {picture, pose};
  }

 private:
  static inline const cv::Size kSize{640, 480};

  // As a camera with a field of 48 degrees sees a plane.
  cv::Matx33d poseFor(const View& view, cv::Size flat) {
    constexpr double kFocal = 720;
    const double turn = degrees(fRandom.uniform(-view.turn, view.turn + 1e-9));
    const double tilt = degrees(fRandom.uniform(0.0, view.tilt + 1e-9));
    const double towards = fRandom.uniform(0.0, 2 * CV_PI);
    const double scale = fRandom.uniform(view.scale, 1.0 + 1e-9);
    const cv::Matx33d rotation = aroundZ(towards) * aroundX(tilt) * aroundZ(turn - towards);
    const double distance = kFocal / scale;
    const cv::Point2d middle(flat.width / 2.0, flat.height / 2.0);
    const double room = 1.1 * cv::norm(middle) * scale;
    const cv::Point2d at(between(room, kSize.width), between(room, kSize.height));
    const cv::Matx33d plane(rotation(0, 0), rotation(0, 1), 0, rotation(1, 0), rotation(1, 1), 0,
                            rotation(2, 0), rotation(2, 1), distance);
    const cv::Matx33d camera(kFocal, 0, at.x, 0, kFocal, at.y, 0, 0, 1);
    const cv::Matx33d centred(1, 0, -middle.x, 0, 1, -middle.y, 0, 0, 1);
    return camera * plane * centred;
  }

  // Within the side, `room` away from both ends where there is room.
  double between(double room, double side) {
    return room * 2 >= side ? side / 2 : fRandom.uniform(room, side - room);
  }

  void shade(cv::Mat& grey, double most) {
    const double dark = 1 - fRandom.uniform(0.0, most);
    const double angle = fRandom.uniform(0.0, 2 * CV_PI);
    for (int y = 0; y < grey.rows; ++y)
      for (int x = 0; x < grey.cols; ++x) {
        const double along = (x - grey.cols / 2.0) / grey.cols * std::cos(angle) +
                             (y - grey.rows / 2.0) / grey.rows * std::sin(angle);
        const double light = dark + (1 - dark) * std::clamp(0.5 + along, 0.0, 1.0);
        auto& pixel = grey.at<std::uint8_t>(y, x);
        pixel = cv::saturate_cast<std::uint8_t>(pixel * light);
      }
  }

  void addNoise(cv::Mat& grey, double deviation) {
    cv::Mat noise(grey.size(), CV_16S), sum;
    fRandom.fill(noise, cv::RNG::NORMAL, 0, deviation);
    cv::add(grey, noise, sum, cv::noArray(), CV_16S);
    sum.convertTo(grey, CV_8U);
  }

  static double degrees(double angle) { return angle * CV_PI / 180; }
  static cv::Matx33d aroundZ(double a) {
    return {std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a), 0, 0, 0, 1};
  }
  static cv::Matx33d aroundX(double a) {
    return {1, 0, 0, 0, std::cos(a), -std::sin(a), 0, std::sin(a), std::cos(a)};
  }

 protected:
  cv::RNG fRandom;
};
