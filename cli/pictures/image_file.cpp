// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/image_file.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <algorithm>
#include <cmath>

#include "cli/pictures/output_file.h"

namespace cli {
namespace {

constexpr int kJpegQuality = 2;  // of the encoder's own scale, 1 to 31, on which 1 is the best

std::uint8_t rounded(double value) {
  return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

// BT.601, luminance from 16 to 235 and chrominance from 16 to 240: as the robot's cameras have it.
void writeRgb(int y, int u, int v, std::uint8_t* rgb) {
  const double grey = (y - 16) * 255.0 / 219;
  rgb[0] = rounded(grey + 1.596 * (v - 128));
  rgb[1] = rounded(grey - 0.392 * (u - 128) - 0.813 * (v - 128));
  rgb[2] = rounded(grey + 2.017 * (u - 128));
}

film::VideoFrame rgbOf(const Picture& picture) {
  film::VideoFrame frame = film::newFrame(picture.width, picture.height, AV_PIX_FMT_RGB24);
  const std::uint8_t* pair = picture.bytes.data();
  for (int row = 0; row < picture.height; ++row) {
    std::uint8_t* rgb = frame->data[0] + std::ptrdiff_t{row} * frame->linesize[0];
    for (int i = 0; i < picture.width / 2; ++i, pair += 4, rgb += 6) {
      writeRgb(pair[0], pair[1], pair[3], rgb);
      writeRgb(pair[2], pair[1], pair[3], rgb + 3);
    }
  }
  return frame;
}

// Of one plane, to the 0 to 255 of JPEG.
void stretch(AVFrame& frame, int plane, int width, double from, double range, double middle) {
  std::uint8_t stretched[256];
  for (int value = 0; value < 256; ++value)
    stretched[value] = rounded((value - from) * 255 / range + middle);
  for (int row = 0; row < frame.height; ++row) {
    std::uint8_t* bytes = frame.data[plane] + std::ptrdiff_t{row} * frame.linesize[plane];
    std::transform(bytes, bytes + width, bytes, [&](std::uint8_t byte) { return stretched[byte]; });
  }
}

film::VideoFrame fullRangeOf(const Picture& picture) {
  film::VideoFrame frame = planesOf(picture);
  stretch(*frame, 0, picture.width, 16, 219, 0);
  for (const int chrominance : {1, 2})
    stretch(*frame, chrominance, picture.width / 2, 128, 224, 128);
  frame->format = AV_PIX_FMT_YUVJ422P;
  return frame;
}

film::Packet png(const Picture& picture) {
  const film::CodecContext encoder =
      film::newEncoder("png", picture.width, picture.height, AV_PIX_FMT_RGB24);
  encoder->time_base = {1, 1};
  film::require(avcodec_open2(encoder.get(), nullptr, nullptr), "FFmpeg can't write PNG");
  return film::encode(*encoder, *rgbOf(picture));
}

film::Packet jpeg(const Picture& picture) {
  const film::CodecContext encoder =
      film::newEncoder("mjpeg", picture.width, picture.height, AV_PIX_FMT_YUVJ422P);
  encoder->time_base = {1, 1};
  encoder->flags |= AV_CODEC_FLAG_QSCALE;
  encoder->global_quality = kJpegQuality * FF_QP2LAMBDA;
  film::require(avcodec_open2(encoder.get(), nullptr, nullptr), "FFmpeg can't write JPEG");
  const film::VideoFrame frame = fullRangeOf(picture);
  frame->quality = encoder->global_quality;
  return film::encode(*encoder, *frame);
}

}  // namespace

void requireImageName(const std::string& path) {
  requireEnding(path, {".png", ".jpg", ".jpeg"});
}

void writeImage(const std::string& path, const Picture& picture) {
  const film::Packet packet = endingOf(path) == ".png" ? png(picture) : jpeg(picture);
  writeWhole(path, packet->data, static_cast<std::size_t>(packet->size));
}

}  // namespace cli
