// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/automatic_modes.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "robot/camera/parameter_scales.h"

namespace robot {
namespace {

constexpr double kMediumLight = 118;
constexpr double kStep = 0.2;         // of the way that is left, in stops
constexpr double kNearEnough = 0.01;  // of the value: then nothing moves any more

double stepTowards(double now, double wanted) {
  if (std::abs(wanted - now) <= kNearEnough * wanted) return now;
  const double start = std::max(now, 0.01);  // also out of the dark
  return start * std::pow(wanted / start, kStep);
}

double luminance(const cv::Scalar& mean) {
  return 0.114 * mean[0] + 0.587 * mean[1] + 0.299 * mean[2];
}

double lightOf(const CameraParameters& parameters, int id, double value) {
  return id == kExposure ? lightOfExposure(value) : lightOfGain(parameters.model(), value);
}

// Moves one of exposure and gain so that it gives `light`, or as much as it can.
void giveLight(CameraParameters& parameters, int id, double light) {
  const double value =
      id == kExposure ? exposureOfLight(light) : gainOfLight(parameters.model(), light);
  parameters.move(id, value);
}

void adaptLight(CameraParameters& parameters, double seen) {
  const bool exposition = parameters.isOn(kAutoExposition);
  const bool gain = parameters.isOn(kAutoGain) || (exposition && parameters.model() == 2);
  const double correction =
      parameters.has(kExposureCorrection) ? parameters.get(kExposureCorrection) : 0;
  const double wanted = kMediumLight * lightOfCorrection(correction) / std::max(seen, 1.0);
  const auto now = [&](int id) { return lightOf(parameters, id, parameters.position(id)); };
  const double next = stepTowards(now(kExposure) * now(kGain), wanted);
  // The exposure as if the gain were at rest; the gain for what the exposure can't give.
  if (exposition) giveLight(parameters, kExposure, gain ? next : next / now(kGain));
  if (gain) giveLight(parameters, kGain, next / std::max(now(kExposure), 0.01));
}

// Towards a mean that is grey.
void adaptWhiteBalance(CameraParameters& parameters, const cv::Scalar& mean) {
  const double blue = std::max(mean[0], 1.0);
  const double green = std::max(mean[1], 1.0);
  const double red = std::max(mean[2], 1.0);
  if (parameters.has(kWhiteBalance)) {
    const double now = warmthOfWhiteBalance(parameters.position(kWhiteBalance));
    parameters.move(kWhiteBalance, whiteBalanceOfWarmth(stepTowards(now, std::sqrt(blue / red))));
    return;
  }
  const auto follow = [&](int id, double wanted) {
    const double now = factorOfChroma(parameters.position(id));
    parameters.move(id, chromaOfFactor(stepTowards(now, wanted)));
  };
  follow(kRedChroma, green / red);
  follow(kBlueChroma, green / blue);
}

}  // namespace

bool isAutomatic(const CameraParameters& parameters) {
  return parameters.isOn(kAutoExposition) || parameters.isOn(kAutoGain) ||
         parameters.isOn(kAutoWhiteBalance);
}

cv::Scalar meanColour(const cv::Mat& bgr) {
  cv::Mat few;
  cv::resize(bgr, few, {64, 48}, 0, 0, cv::INTER_NEAREST);
  return cv::mean(few);
}

void adapt(CameraParameters& parameters, const cv::Scalar& mean) {
  if (parameters.isOn(kAutoExposition) || parameters.isOn(kAutoGain))
    adaptLight(parameters, luminance(mean));
  if (parameters.isOn(kAutoWhiteBalance)) adaptWhiteBalance(parameters, mean);
}

}  // namespace robot
