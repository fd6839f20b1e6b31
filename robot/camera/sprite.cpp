// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/sprite.h"

#include <opencv2/imgproc.hpp>

#include "robot/camera/scene_item.h"

namespace robot {
namespace {

constexpr int kFiner = 4;  // painted this much larger, for smooth edges

cv::Point fine(cv::Point2d point) {
  return {cvRound(point.x * kFiner), cvRound(point.y * kFiner)};
}

}  // namespace

Sprite::Brush::Brush(cv::Size size)
    : fColor(size * kFiner, CV_8UC3, cv::Scalar::all(0)),
      fCover(size * kFiner, CV_8UC3, cv::Scalar::all(0)) {
}

void Sprite::Brush::ellipse(cv::Point2d centre, cv::Size2d radii, cv::Scalar bgr) {
  const cv::Size axes(cvRound(radii.width * kFiner), cvRound(radii.height * kFiner));
  cv::ellipse(fColor, fine(centre), axes, 0, 0, 360, bgr, cv::FILLED);
  cv::ellipse(fCover, fine(centre), axes, 0, 0, 360, cv::Scalar::all(255), cv::FILLED);
}

void Sprite::Brush::polygon(const std::vector<cv::Point2d>& corners, cv::Scalar bgr) {
  std::vector<cv::Point> points;
  points.reserve(corners.size());
  for (const auto& corner : corners) points.push_back(fine(corner));
  cv::fillPoly(fColor, points, bgr);
  cv::fillPoly(fCover, points, cv::Scalar::all(255));
}

void Sprite::Brush::rectangle(cv::Rect2d area, cv::Scalar bgr) {
  const cv::Rect where(fine(area.tl()), fine(area.br()));
  cv::rectangle(fColor, where, bgr, cv::FILLED);
  cv::rectangle(fCover, where, cv::Scalar::all(255), cv::FILLED);
}

void Sprite::Brush::line(cv::Point2d from, cv::Point2d to, double thickness, cv::Scalar bgr) {
  const int width = cvRound(thickness * kFiner);
  cv::line(fColor, fine(from), fine(to), bgr, width);
  cv::line(fCover, fine(from), fine(to), cv::Scalar::all(255), width);
}

Sprite::Sprite(cv::Size size, const std::function<void(Brush&)>& paint) {
  Brush brush(size);
  paint(brush);
  cv::resize(brush.fColor, fColor, size, 0, 0, cv::INTER_AREA);
  cv::resize(brush.fCover, fClear, size, 0, 0, cv::INTER_AREA);
  cv::bitwise_not(fClear, fClear);
}

void Sprite::draw(cv::Mat& picture, cv::Point centre) const {
  const cv::Point corner = centre - cv::Point(size().width / 2, size().height / 2);
  const cv::Rect target = cv::Rect(corner, size()) & cv::Rect({0, 0}, picture.size());
  if (target.empty()) return;
  const cv::Point offset = target.tl() - corner;
  for (int row = 0; row < target.height; ++row) {
    std::uint8_t* out = picture.ptr(target.y + row, target.x);
    const std::uint8_t* color = fColor.ptr(offset.y + row, offset.x);
    const std::uint8_t* clear = fClear.ptr(offset.y + row, offset.x);
    for (int i = 0; i < target.width * 3; ++i)
      out[i] = static_cast<std::uint8_t>(color[i] + (out[i] * clear[i] + 127) / 255);
  }
}

MovingSprite::MovingSprite(std::string name, Sprite sprite, Course course)
    : fName(std::move(name)), fSprite(std::move(sprite)), fCourse(std::move(course)) {
}

void MovingSprite::draw(cv::Mat& picture, std::int64_t time) const {
  const cv::Point2d at = fCourse(static_cast<double>(time) / 1e6);
  fSprite.draw(picture, {cvRound(at.x * picture.cols), cvRound(at.y * picture.rows)});
}

std::optional<SceneTruth> MovingSprite::truthAt(std::int64_t time) const {
  const cv::Point2d at = fCourse(static_cast<double>(time) / 1e6);
  return SceneTruth{fName, at.x, at.y, static_cast<double>(fSprite.size().width) / kSceneWidth,
                    static_cast<double>(fSprite.size().height) / kSceneHeight};
}

}  // namespace robot
