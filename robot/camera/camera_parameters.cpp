#include "robot/camera/camera_parameters.h"

#include "ky/error.h"

namespace robot {
namespace {

constexpr int kFirst = 1;  // models
constexpr int kSecond = 2;
constexpr int kBoth = kFirst | kSecond;

struct Entry {
  int models;
  ParameterRange range;
};

constexpr Entry kParameters[] = {
    {kBoth, {kBrightness, "brightness", 0, 255, PictureControls::kNeutralBrightness}},
    {kBoth, {kContrast, "contrast", 0, 127, PictureControls::kNeutralContrast}},
    {kBoth, {kSaturation, "saturation", 0, 255, 128}},
    {kFirst, {kHue, "hue", -180, 180, 0}},
    {kFirst, {kRedChroma, "red chroma", 0, 255, 128}},
    {kFirst, {kBlueChroma, "blue chroma", 0, 255, 128}},
    {kFirst, {kGain, "gain", 0, 255, 32}},
    {kSecond, {kGain, "gain", 32, 255, 32}},
    {kBoth, {kHorizontalFlip, "horizontal flip", 0, 1, 0}},
    {kBoth, {kVerticalFlip, "vertical flip", 0, 1, 0}},
    {kBoth, {kAutoExposition, "auto exposition", 0, 1, 1}},
    {kBoth, {kAutoWhiteBalance, "auto white balance", 0, 1, 1}},
    {kFirst, {kAutoGain, "auto gain", 0, 1, 1}},
    {kBoth, {kExposure, "exposure", 0, 510, 255}},
    {kFirst, {kExposureCorrection, "exposure correction", -6, 6, 0}},
    {kSecond, {kWhiteBalance, "white balance", -120, -36, -78}},
};

}  // namespace

std::vector<ParameterRange> parametersOf(int model) {
  std::vector<ParameterRange> result;
  for (const Entry& entry : kParameters)
    if ((entry.models & model) != 0) result.push_back(entry.range);
  return result;
}

CameraParameters::CameraParameters(int model) : fModel(model) {
  for (const ParameterRange& range : parametersOf(model)) {
    fRanges.emplace(range.id, range);
    fValues[range.id] = range.initial;
  }
}

const ParameterRange& CameraParameters::require(int id) const {
  const auto found = fRanges.find(id);
  if (found == fRanges.end())
    throw Ky::KyError("a camera of model " + std::to_string(fModel) + " has no parameter " +
                      std::to_string(id));
  return found->second;
}

int CameraParameters::get(int id) const {
  require(id);
  return fValues.at(id);
}

void CameraParameters::set(int id, int value) {
  const ParameterRange& range = require(id);
  if (value < range.minimum || value > range.maximum)
    throw Ky::KyError("parameter " + std::to_string(id) + " (" + range.name + ") can't be " +
                      std::to_string(value) + "; it goes from " + std::to_string(range.minimum) +
                      " to " + std::to_string(range.maximum));
  fValues[id] = value;
}

PictureControls CameraParameters::controls() const {
  PictureControls controls;
  controls.brightness = get(kBrightness);
  controls.contrast = get(kContrast);
  controls.horizontalFlip = get(kHorizontalFlip) != 0;
  controls.verticalFlip = get(kVerticalFlip) != 0;
  return controls;
}

}  // namespace robot
