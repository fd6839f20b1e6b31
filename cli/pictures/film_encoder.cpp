// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/film_encoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace cli {
namespace {

constexpr int kKeySeconds = 5;  // to find one's way in the film

}  // namespace

FilmEncoder::FilmEncoder(int width, int height, int fps)
    : fContext(newEncoder("libx264", width, height, AV_PIX_FMT_YUV422P)) {
  fContext->color_range = AVCOL_RANGE_MPEG;
  fContext->colorspace = AVCOL_SPC_SMPTE170M;  // BT.601
  fContext->time_base = {1, fps};
  fContext->framerate = {fps, 1};
  fContext->gop_size = kKeySeconds * fps;
  fContext->max_b_frames = 0;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "preset", "veryfast", 0);
  av_dict_set(&options, "tune", "zerolatency", 0);
  av_dict_set(&options, "crf", "18", 0);
  av_dict_set(&options, "forced-idr", "1", 0);
  const int result = avcodec_open2(fContext.get(), nullptr, &options);
  av_dict_free(&options);
  require(result, "the film's encoder can't be started");
}

bool FilmEncoder::fits(const Picture& picture) const {
  return picture.width == fContext->width && picture.height == fContext->height;
}

FilmEncoder::Encoded FilmEncoder::encode(const Picture& picture, bool wantsKey) {
  const VideoFrame frame = planesOf(picture);
  frame->pts = fNumber++;
  frame->pict_type = wantsKey ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
  const std::shared_ptr<AVPacket> packet = cli::encode(*fContext, *frame);
  return {{packet, packet->data, static_cast<std::size_t>(packet->size)},
          (packet->flags & AV_PKT_FLAG_KEY) != 0};
}

}  // namespace cli
