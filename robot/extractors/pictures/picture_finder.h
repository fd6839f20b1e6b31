// SPDX-License-Identifier: Apache-2.0
// Finds a taught picture in what the camera sees.
#pragma once

#include <array>
#include <optional>

#include "robot/extractors/pictures/taught_picture.h"

namespace robot {

using Corners = std::array<cv::Point2f, 4>;

struct FoundPicture {
  Corners corners;  // top left, top right, bottom right, bottom left of the picture; pixels
  int matched = 0;  // features that agree on the corners
};

// Once, even if the picture is there several times. `scene`: the features of a picture of `size`.
std::optional<FoundPicture> findPicture(const TaughtPicture& picture, const Features& scene,
                                        cv::Size size);

// Whether a flat picture may look so to a camera: not mirrored or folded, neither tiny nor tilted
// beyond recognition, its middle in sight.
bool isPlausibleView(const Corners& corners, cv::Size size);

}  // namespace robot
