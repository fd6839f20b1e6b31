// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_pictures.h"

#include <opencv2/imgproc.hpp>
#include <string>

namespace robot {
namespace {

constexpr int kFiner = 4;  // painted this much larger, for smooth edges

cv::Mat reduced(const cv::Mat& picture) {
  cv::Mat result;
  cv::resize(picture, result, {}, 1.0 / kFiner, 1.0 / kFiner, cv::INTER_AREA);
  return result;
}

void write(cv::Mat& picture, const std::string& text, cv::Point at, double scale, cv::Scalar bgr) {
  cv::putText(picture, text, at * kFiner, cv::FONT_HERSHEY_DUPLEX, scale * kFiner, bgr,
              cvRound(2 * kFiner * scale + 1), cv::LINE_AA);
}

void fill(cv::Mat& picture, std::vector<cv::Point> corners, cv::Scalar bgr) {
  for (cv::Point& corner : corners) corner *= kFiner;
  cv::fillPoly(picture, corners, bgr);
}

void paintGable(cv::Mat& picture, cv::Rect wall, cv::Scalar bgr) {
  const int left = wall.x, right = wall.br().x, top = wall.y, bottom = wall.br().y;
  fill(picture, {{left, top}, {right, top}, {right, bottom}, {left, bottom}}, bgr);
  fill(picture, {{left - 3, top}, {(left + right) / 2, top - 18}, {right + 3, top}}, bgr * 0.55);
  for (int y = top + 5; y + 8 < bottom; y += 13)
    for (int x = left + 4; x + 6 < right; x += 11)
      fill(picture, {{x, y}, {x + 6, y}, {x + 6, y + 8}, {x, y + 8}}, {60, 50, 44});
}

void paintBoat(cv::Mat& picture, cv::Point foot, int height, cv::Scalar sail, cv::Scalar hull) {
  const int x = foot.x, y = foot.y, h = height;
  fill(picture, {{x + 1, y - h}, {x + 1, y - 8}, {x + h * 5 / 8, y - 8}}, sail);
  fill(picture, {{x - 2, y - h * 3 / 4}, {x - 2, y - 8}, {x - h * 3 / 8, y - 8}}, {240, 246, 250});
  fill(picture,
       {{x - h / 2, y - 6}, {x + h * 2 / 3, y - 6}, {x + h / 2, y + 6}, {x - h / 3, y + 6}}, hull);
}

void paintWater(cv::Mat& picture, cv::Rect water) {
  cv::RNG random(7);
  for (int i = 0; i < 60; ++i) {
    const cv::Point at(random.uniform(water.x, water.br().x),
                       random.uniform(water.y, water.br().y));
    const cv::Scalar bgr = i % 2 == 0 ? cv::Scalar(214, 190, 140) : cv::Scalar(110, 66, 22);
    const int length = random.uniform(4, 16);
    fill(picture, {at, at + cv::Point(length, 0), at + cv::Point(length, 2), at + cv::Point(0, 2)},
         bgr);
  }
}

}  // namespace

cv::Mat paintHarbour() {
  cv::Mat picture(160 * kFiner, 220 * kFiner, CV_8UC3, cv::Scalar(196, 222, 246));
  cv::circle(picture, cv::Point(184, 28) * kFiner, 15 * kFiner, {70, 150, 250}, cv::FILLED);
  fill(picture, {{0, 84}, {220, 84}, {220, 160}, {0, 160}}, {160, 118, 54});
  paintGable(picture, {10, 46, 34, 38}, {86, 110, 206});
  paintGable(picture, {46, 36, 26, 48}, {120, 200, 232});
  paintGable(picture, {76, 52, 40, 32}, {150, 170, 110});
  paintGable(picture, {132, 44, 28, 40}, {190, 150, 190});
  paintWater(picture, {0, 88, 204, 48});
  paintBoat(picture, {58, 126}, 56, {60, 60, 210}, {40, 40, 60});
  paintBoat(picture, {128, 112}, 40, {70, 170, 90}, {90, 60, 30});
  paintBoat(picture, {176, 130}, 66, {40, 180, 240}, {60, 40, 120});
  fill(picture, {{0, 140}, {220, 140}, {220, 160}, {0, 160}}, {70, 44, 30});
  write(picture, "HARBOUR DAYS", {12, 156}, 0.6, {230, 240, 250});
  return reduced(picture);
}

cv::Mat paintEmblem() {
  constexpr int kSide = 160;
  const cv::Scalar navy(96, 50, 22), gold(60, 190, 244), white(248, 246, 244), red(60, 56, 206);
  cv::Mat picture(kSide * kFiner, kSide * kFiner, CV_8UC3, white);
  cv::circle(picture, cv::Point(80, 70) * kFiner, 64 * kFiner, navy, cv::FILLED);
  for (int ray = 0; ray < 11; ++ray)
    cv::ellipse(picture, cv::Point(86, 62) * kFiner, cv::Size(58, 58) * kFiner, 0, 33 * ray,
                33 * ray + 9 + ray, gold, cv::FILLED);
  cv::circle(picture, cv::Point(86, 62) * kFiner, 34 * kFiner, navy, cv::FILLED);
  fill(picture, {{38, 44}, {84, 38}, {84, 84}, {60, 84}, {60, 122}, {38, 122}}, red);
  cv::circle(picture, cv::Point(86, 61) * kFiner, 24 * kFiner, white, cv::FILLED);
  cv::circle(picture, cv::Point(88, 61) * kFiner, 14 * kFiner, navy, cv::FILLED);
  cv::circle(picture, cv::Point(94, 55) * kFiner, 5 * kFiner, gold, cv::FILLED);
  fill(picture, {{96, 100}, {116, 92}, {112, 112}}, white);
  fill(picture, {{70, 112}, {82, 98}, {90, 118}}, gold);
  write(picture, "PERISCOPE", {10, 154}, 0.78, red);
  return reduced(picture);
}

}  // namespace robot
