// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/picture.h"

extern "C" {
#include <libavutil/frame.h>
}

#include "ky/error.h"
#include "ky/video_device_proxy.h"

namespace cli {
namespace {

constexpr const char* kDevice = "KyVideoDevice";
constexpr std::size_t kRecordSize = 7;

bool isSide(int pixels, int limit) {
  return pixels > 0 && pixels <= limit && pixels % 2 == 0;
}

}  // namespace

Picture pictureOf(const Ky::KyValue& record) {
  if (!record.isArray() || record.size() < kRecordSize)
    throw Ky::KyError(kDevice, "", "the robot sent something else in place of a picture");
  const int width = record[0].asInt();
  const int height = record[1].asInt();
  if (!isSide(width, Ky::kMaxImageWidth) || !isSide(height, Ky::kMaxImageHeight))
    throw Ky::KyError(kDevice, "",
                      "the robot sent a picture of " + std::to_string(width) + " x " +
                          std::to_string(height) + " pixels; no camera takes such a one");
  if (record[3].asInt() != kColorSpace)
    throw Ky::KyError(kDevice, "",
                      "the robot sent a picture of color space " +
                          std::to_string(record[3].asInt()) + "; YUV 4:2:2 (9) was asked for");
  return {width, height, record[4].asInt64() * 1000000 + record[5].asInt64(), record[6].asBinary()};
}

void requirePixels(const Picture& picture) {
  const std::size_t needed = Ky::imageBytes(picture.width, picture.height, kColorSpace);
  if (picture.bytes.size() < needed)
    throw Ky::KyError(kDevice, "",
                      "the robot sent a picture of " + std::to_string(picture.bytes.size()) +
                          " bytes; its size needs " + std::to_string(needed));
}

film::VideoFrame planesOf(const Picture& picture) {
  film::VideoFrame frame = film::newFrame(picture.width, picture.height, AV_PIX_FMT_YUV422P);
  const std::uint8_t* pair = picture.bytes.data();
  for (int row = 0; row < picture.height; ++row) {
    std::uint8_t* y = frame->data[0] + std::ptrdiff_t{row} * frame->linesize[0];
    std::uint8_t* u = frame->data[1] + std::ptrdiff_t{row} * frame->linesize[1];
    std::uint8_t* v = frame->data[2] + std::ptrdiff_t{row} * frame->linesize[2];
    for (int i = 0; i < picture.width / 2; ++i, pair += 4) {
      y[2 * i] = pair[0];
      u[i] = pair[1];
      y[2 * i + 1] = pair[2];
      v[i] = pair[3];
    }
  }
  return frame;
}

}  // namespace cli
