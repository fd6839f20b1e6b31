// SPDX-License-Identifier: Apache-2.0
// How a landmark looks: a black square with cells that tell its number, on white.
#pragma once

#include <opencv2/core.hpp>

namespace robot {

constexpr int kTagNumbers = 587;  // numbers are 0..586
// Of the whole picture, on each side: eight of the square and a white margin of one.
constexpr int kTagCells = 10;

// 8-bit grey, kTagCells * cell pixels wide and high. Throws KyError for a number that there isn't.
cv::Mat tagPicture(int number, int cell);

}  // namespace robot
