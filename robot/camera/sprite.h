// SPDX-License-Identifier: Apache-2.0
// A small picture with smooth edges that is painted once and drawn often.
#pragma once

#include <functional>
#include <opencv2/core.hpp>
#include <vector>

#include "robot/camera/scene_item.h"

namespace robot {

// Immutable.
class Sprite {
 public:
  // Paints with coordinates in pixels of the finished sprite.
  class Brush {
   public:
    void ellipse(cv::Point2d centre, cv::Size2d radii, cv::Scalar bgr);
    void polygon(const std::vector<cv::Point2d>& corners, cv::Scalar bgr);
    void rectangle(cv::Rect2d area, cv::Scalar bgr);
    void line(cv::Point2d from, cv::Point2d to, double thickness, cv::Scalar bgr);

   private:
    friend class Sprite;
    explicit Brush(cv::Size size);
    cv::Mat fColor;
    cv::Mat fCover;
  };

  Sprite(cv::Size size, const std::function<void(Brush&)>& paint);

  cv::Size size() const { return fColor.size(); }
  // The part that lies outside the picture is left out.
  void draw(cv::Mat& picture, cv::Point centre) const;

 private:
  cv::Mat fColor;  // already multiplied with the cover
  cv::Mat fClear;  // 255 where the picture shows through; three equal channels
};

// A sprite on a course.
class MovingSprite : public SceneItem {
 public:
  // The centre as fractions of the picture at a time in seconds since the Unix epoch.
  using Course = std::function<cv::Point2d(double seconds)>;

  MovingSprite(std::string name, Sprite sprite, Course course);

  void draw(cv::Mat& picture, std::int64_t time) const override;
  std::optional<SceneTruth> truthAt(std::int64_t time) const override;

 private:
  std::string fName;
  Sprite fSprite;
  Course fCourse;
};

}  // namespace robot
