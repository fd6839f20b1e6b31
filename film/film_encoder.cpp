// SPDX-License-Identifier: Apache-2.0
#include "film/film_encoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <memory>

namespace film {
namespace {

constexpr int kKeySeconds = 5;  // to find one's way in the film

AVPixelFormat pixelFormatOf(Look look) {
  return look == Look::Camera ? AV_PIX_FMT_YUV422P : AV_PIX_FMT_YUV420P;
}

// What players need to know to show the same colours.
void tellColors(AVCodecContext& context, Look look) {
  context.color_range = AVCOL_RANGE_MPEG;
  if (look == Look::Camera) {
    context.colorspace = AVCOL_SPC_SMPTE170M;  // BT.601
    return;
  }
  context.colorspace = AVCOL_SPC_BT709;
  context.color_primaries = AVCOL_PRI_BT709;
  context.color_trc = AVCOL_TRC_IEC61966_2_1;  // sRGB
  context.chroma_sample_location = AVCHROMA_LOC_CENTER;
}

void tellRate(AVCodecContext& context, int fps) {
  context.time_base = {1, fps};
  context.framerate = {fps, 1};
  context.gop_size = kKeySeconds * fps;
  context.max_b_frames = 0;
}

void open(AVCodecContext& context, const EncoderSettings& settings) {
  AVDictionary* options = nullptr;
  av_dict_set(&options, "preset", settings.preset.c_str(), 0);
  av_dict_set(&options, "tune", "zerolatency", 0);
  av_dict_set_int(&options, "crf", settings.quality, 0);
  av_dict_set(&options, "forced-idr", "1", 0);
  if (settings.threads > 0) av_dict_set_int(&options, "threads", settings.threads, 0);
  const int result = avcodec_open2(&context, nullptr, &options);
  av_dict_free(&options);
  require(result, "the film's encoder can't be started");
}

}  // namespace

FilmEncoder::FilmEncoder(const EncoderSettings& settings)
    : fContext(
          newEncoder("libx264", settings.width, settings.height, pixelFormatOf(settings.look))) {
  tellColors(*fContext, settings.look);
  tellRate(*fContext, settings.fps);
  open(*fContext, settings);
}

VideoFrame FilmEncoder::newFrame() const {
  return film::newFrame(fContext->width, fContext->height, fContext->pix_fmt);
}

EncodedPicture FilmEncoder::encode(AVFrame& frame) {
  frame.pts = fNumber++;
  frame.pict_type = AV_PICTURE_TYPE_NONE;
  const std::shared_ptr<AVPacket> packet = film::encode(*fContext, frame);
  return {{packet, packet->data, static_cast<std::size_t>(packet->size)},
          (packet->flags & AV_PKT_FLAG_KEY) != 0};
}

bool FilmEncoder::fits(int width, int height) const {
  return width == fContext->width && height == fContext->height;
}

}  // namespace film
