// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/camera_parameters.h"

#include <algorithm>
#include <cmath>

#include "ky/error.h"
#include "robot/camera/parameter_scales.h"

namespace robot {
namespace {

constexpr int kFirst = 1;  // models
constexpr int kSecond = 2;
constexpr int kBoth = kFirst | kSecond;

struct Entry {
  int models;
  ParameterRange range;
};

// Initially a picture stays as its source made it.
constexpr Entry kParameters[] = {
    {kBoth, {kBrightness, "brightness", 0, 255, PictureControls::kNeutralBrightness}},
    {kBoth, {kContrast, "contrast", 0, 127, PictureControls::kNeutralContrast}},
    {kBoth, {kSaturation, "saturation", 0, 255, PictureControls::kNeutralSaturation}},
    {kFirst, {kHue, "hue", -180, 180, 0}},
    // The second model can tell its hue and not change it.
    {kSecond, {kHue, "hue", 0, 0, 0}},
    {kFirst, {kRedChroma, "red chroma", 0, 255, 128}},
    {kFirst, {kBlueChroma, "blue chroma", 0, 255, 128}},
    {kFirst, {kGain, "gain", 0, 255, 32}},
    {kSecond, {kGain, "gain", 32, 255, 32}},
    {kBoth, {kHorizontalFlip, "horizontal flip", 0, 1, 0}},
    {kBoth, {kVerticalFlip, "vertical flip", 0, 1, 0}},
    {kBoth, {kAutoExposition, "auto exposition", 0, 1, 0}},
    {kBoth, {kAutoWhiteBalance, "auto white balance", 0, 1, 0}},
    {kFirst, {kAutoGain, "auto gain", 0, 1, 0}},
    {kBoth, {kExposure, "exposure", 0, 510, 255}},
    {kFirst, {kExposureCorrection, "exposure correction", -6, 6, 0}},
    {kSecond, {kWhiteBalance, "white balance", -120, -36, -78}},
};

[[noreturn]] void throwNoParameter(int id, int model) {
  const auto known = std::find_if(std::begin(kParameters), std::end(kParameters),
                                  [&](const Entry& entry) { return entry.range.id == id; });
  const std::string parameter = "parameter " + std::to_string(id);
  if (known == std::end(kParameters))
    throw Ky::KyError("cameras have no " + parameter +
                      "; the ids are 0 to 8, 11 to 15, 17, 18, 20, 21 and 33");
  throw Ky::KyError("a camera of model " + std::to_string(model) + " has no " + parameter + " (" +
                    known->range.name + "); one of model " + std::to_string(known->models) +
                    " has");
}

}  // namespace

std::vector<ParameterRange> parametersOf(int model) {
  std::vector<ParameterRange> result;
  for (const Entry& entry : kParameters)
    if ((entry.models & model) != 0) result.push_back(entry.range);
  return result;
}

CameraParameters::CameraParameters(int model) : fModel(model) {
  for (const ParameterRange& range : parametersOf(model))
    fParameters[range.id] = {range, static_cast<double>(range.initial)};
}

const ParameterRange& CameraParameters::range(int id) const {
  const auto found = fParameters.find(id);
  if (found == fParameters.end()) throwNoParameter(id, fModel);
  return found->second.range;
}

void CameraParameters::check(int id, int value) const {
  const ParameterRange& known = range(id);
  if (value < known.minimum || value > known.maximum)
    throw Ky::KyError("parameter " + std::to_string(id) + " (" + known.name + ") can't be " +
                      std::to_string(value) + "; it goes from " + std::to_string(known.minimum) +
                      " to " + std::to_string(known.maximum));
}

int CameraParameters::get(int id) const {
  range(id);
  return static_cast<int>(std::lround(position(id)));
}

void CameraParameters::set(int id, int value) {
  check(id, value);
  fParameters.at(id).position = value;
}

void CameraParameters::move(int id, double value) {
  Parameter& parameter = fParameters.at(id);
  parameter.position = std::clamp<double>(value, parameter.range.minimum, parameter.range.maximum);
}

PictureControls CameraParameters::controls() const {
  PictureControls controls;
  controls.light = lightOfExposure(get(kExposure)) * lightOfGain(fModel, get(kGain));
  if (has(kWhiteBalance)) {
    controls.red = warmthOfWhiteBalance(get(kWhiteBalance));
    controls.blue = 1 / controls.red;
  } else {
    controls.red = factorOfChroma(get(kRedChroma));
    controls.blue = factorOfChroma(get(kBlueChroma));
  }
  controls.brightness = get(kBrightness);
  controls.contrast = get(kContrast);
  controls.saturation = get(kSaturation);
  controls.hue = get(kHue);
  controls.horizontalFlip = isOn(kHorizontalFlip);
  controls.verticalFlip = isOn(kVerticalFlip);
  return controls;
}

}  // namespace robot
