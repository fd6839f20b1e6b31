// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/encoder_trial.h"

#include <cstdint>
#include <vector>

#include "ky/error.h"
#include "robot/streaming/picture_encoder.h"

namespace robot {
namespace {

constexpr int kResolution = 2;  // 640 x 480

void encodeOne(const std::string& name, int colorSpace) {
  EncoderSettings settings;
  settings.format = {kResolution, colorSpace};
  settings.name = name;
  const cv::Size size = sizeOf(settings.format.resolution);
  const std::size_t bytes = static_cast<std::size_t>(size.area()) * layersOf(colorSpace);
  PictureEncoder(settings).encode(Ky::KyBinary(std::vector<std::uint8_t>(bytes, 128)), true);
}

}  // namespace

void tryEncoder(const std::string& name) {
  try {
    for (const int colorSpace : {kGrey, kYuv422}) encodeOne(name, colorSpace);
  } catch (const Ky::KyError& error) {
    throw Ky::KyError(std::string(error.what()) +
                      "; give --encoder another name, or leave it out for \"libx264\"");
  }
}

}  // namespace robot
