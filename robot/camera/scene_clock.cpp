// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_clock.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <opencv2/imgproc.hpp>

namespace robot {

SceneClock::SceneClock(std::string label) : fLabel(std::move(label)) {
}

void SceneClock::draw(cv::Mat& picture, std::int64_t time) const {
  cv::Mat plate = picture(cv::Rect(kX, kY, kWidth, kHeight));
  plate.convertTo(plate, -1, 0.35);
  const int font = cv::FONT_HERSHEY_DUPLEX;
  cv::putText(plate, fLabel, {18, 38}, font, 0.9, {200, 214, 226}, 1, cv::LINE_AA);
  cv::putText(plate, textAt(time), {16, 94}, font, 1.55, {255, 255, 255}, 2, cv::LINE_AA);
}

std::string SceneClock::textAt(std::int64_t time) {
  const std::time_t seconds = time / 1000000;
  std::tm local{};
  localtime_r(&seconds, &local);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min,
                local.tm_sec, static_cast<int>(time % 1000000 / 1000));
  return text.data();
}

}  // namespace robot
