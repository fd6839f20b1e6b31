// SPDX-License-Identifier: Apache-2.0
// Pictures of a landmark as a camera may see it.
#pragma once

#include "robot/camera/tag_picture.h"
#include "views.h"

struct SeenLandmark {
  cv::Mat picture;  // BGR
  int number;
  cv::Point2d centre;  // pixels
};

// Any landmark. The black square is 240 pixels wide at scale 1, in a picture of 640 x 480.
class LandmarkCamera : private ViewCamera {
 public:
  using ViewCamera::ViewCamera;

  SeenLandmark take(const View& view) {
    constexpr int kCell = 30;
    constexpr double kMiddle = robot::kTagCells * kCell / 2.0;
    const int number = fRandom.uniform(0, robot::kTagNumbers);
    const SeenFlat seen = ViewCamera::take(robot::tagPicture(number, kCell), view);
    return {seen.picture, number, seen.at({kMiddle, kMiddle})};
  }
};
