// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_backgrounds.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace robot {
namespace {

void paintSky(cv::Mat& picture, cv::Scalar top, cv::Scalar bottom, double horizon) {
  const int rows = cvRound(picture.rows * horizon);
  for (int row = 0; row < rows; ++row) {
    const double f = static_cast<double>(row) / rows;
    picture.row(row).setTo(top * (1 - f) + bottom * f);
  }
}

// A range of hills: everything below a gentle curve. Numbers are fractions of the picture.
void paintHills(cv::Mat& picture, double height, double swell, double waves, double phase,
                cv::Scalar bgr) {
  std::vector<cv::Point> outline;
  for (int x = 0; x <= picture.cols; x += 8) {
    const double at = static_cast<double>(x) / picture.cols;
    const double y = height + swell * std::sin(2 * CV_PI * (waves * at + phase)) +
                     0.4 * swell * std::sin(2 * CV_PI * (2.3 * waves * at + 1.7 * phase));
    outline.emplace_back(x, cvRound(y * picture.rows));
  }
  outline.emplace_back(picture.cols, picture.rows);
  outline.emplace_back(0, picture.rows);
  cv::fillPoly(picture, outline, bgr, cv::LINE_AA);
}

// A sun or moon whose light fades out over `glow` pixels around it.
void paintDisc(cv::Mat& picture, cv::Point centre, int radius, cv::Scalar bgr, int glow) {
  const int reach = radius + glow;
  const cv::Rect box = cv::Rect(centre.x - reach, centre.y - reach, 2 * reach, 2 * reach) &
                       cv::Rect({0, 0}, picture.size());
  for (int y = box.y; y < box.br().y; ++y)
    for (int x = box.x; x < box.br().x; ++x) {
      const double beyond = std::hypot(x - centre.x, y - centre.y) - radius;
      const double light = std::pow(std::clamp(1 - beyond / glow, 0.0, 1.0), 2) * 0.5;
      auto& pixel = picture.at<cv::Vec3b>(y, x);
      for (int i = 0; i < 3; ++i)
        pixel[i] = cv::saturate_cast<std::uint8_t>(pixel[i] + light * (bgr[i] - pixel[i]));
    }
  cv::circle(picture, centre, radius, bgr, cv::FILLED, cv::LINE_AA);
}

void paintTree(cv::Mat& picture, cv::Point foot, int height) {
  cv::rectangle(picture, {foot.x - height / 16, foot.y - height / 3},
                {foot.x + height / 16, foot.y}, {52, 84, 112}, cv::FILLED);
  for (int tier = 0; tier < 3; ++tier) {
    const int bottom = foot.y - height / 5 - tier * height / 4;
    const int half = height / 3 - tier * height / 13;
    const std::vector<cv::Point> shape = {
        {foot.x - half, bottom}, {foot.x + half, bottom}, {foot.x, bottom - height * 2 / 5}};
    cv::fillConvexPoly(picture, shape, cv::Scalar(58 + 8 * tier, 104 + 10 * tier, 46), cv::LINE_AA);
  }
}

void paintRoad(cv::Mat& picture, cv::Scalar bgr, cv::Scalar stripe) {
  const int top = cvRound(picture.rows * 0.86);
  cv::rectangle(picture, {0, top}, {picture.cols, top + 92}, bgr, cv::FILLED);
  for (int x = 20; x < picture.cols; x += 128)
    cv::rectangle(picture, {x, top + 60}, {x + 64, top + 66}, stripe, cv::FILLED);
}

void paintHouse(cv::Mat& picture, cv::Rect body, cv::Scalar bgr, cv::RNG& random) {
  cv::rectangle(picture, body, bgr, cv::FILLED);
  for (int y = body.y + 16; y + 18 < body.br().y - 60; y += 34)
    for (int x = body.x + 14; x + 14 < body.br().x; x += 28) {
      const bool lit = random.uniform(0, 100) < 42;
      const cv::Scalar window = lit ? cv::Scalar(112, 206, 250) : bgr * 0.7;
      cv::rectangle(picture, {x, y, 13, 17}, window, cv::FILLED);
    }
}

void paintStars(cv::Mat& picture, cv::RNG& random) {
  for (int i = 0; i < 130; ++i) {
    const cv::Point at(random.uniform(0, picture.cols), random.uniform(0, picture.rows / 2));
    const double light = random.uniform(90, 250);
    cv::circle(picture, at, random.uniform(0, 2), {light, light, light}, cv::FILLED, cv::LINE_AA);
  }
}

}  // namespace

cv::Mat paintCountry(cv::Size size) {
  cv::Mat picture(size, CV_8UC3, cv::Scalar(90, 160, 110));
  paintSky(picture, {214, 150, 78}, {236, 224, 200}, 0.72);
  paintDisc(picture, {size.width * 4 / 5, size.height / 5}, 56, {170, 236, 255}, 190);
  paintHills(picture, 0.60, 0.045, 1.3, 0.10, {190, 170, 132});
  paintHills(picture, 0.67, 0.035, 1.7, 0.55, {146, 164, 104});
  paintHills(picture, 0.76, 0.020, 1.1, 0.30, {92, 168, 98});
  for (const auto& [x, y, height] : {std::tuple{70, 802, 170},
                                     {180, 790, 120},
                                     {930, 778, 130},
                                     {1050, 790, 190},
                                     {1200, 784, 150}})
    paintTree(picture, {x, y}, height);
  paintRoad(picture, {112, 108, 106}, {214, 226, 230});
  return picture;
}

cv::Mat paintTown(cv::Size size) {
  cv::RNG random(20);
  cv::Mat picture(size, CV_8UC3, cv::Scalar(48, 40, 36));
  paintSky(picture, {58, 26, 18}, {132, 72, 92}, 0.86);
  paintStars(picture, random);
  paintDisc(picture, {size.width * 5 / 6, size.height / 6}, 48, {214, 236, 244}, 150);
  const int street = cvRound(size.height * 0.86);
  for (int x = -20; x < size.width; x += 118) {
    const int height = random.uniform(250, 450);
    paintHouse(picture, {x, street - height, 126, height}, {78, 50, 48}, random);
  }
  for (int x = -70; x < size.width; x += 166) {
    const int height = random.uniform(150, 300);
    paintHouse(picture, {x, street - height, 148, height}, {58, 38, 34}, random);
  }
  paintRoad(picture, {62, 56, 54}, {104, 110, 118});
  cv::line(picture, {0, street + 36}, {size.width, street + 36}, {126, 120, 116}, 3);
  cv::line(picture, {0, street - 84}, {size.width, street - 84}, {30, 26, 26}, 1, cv::LINE_AA);
  return picture;
}

}  // namespace robot
