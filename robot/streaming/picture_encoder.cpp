// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/picture_encoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
}

#include <new>

#include "ky/error.h"
#include "robot/streaming/planes.h"

namespace robot {
namespace {

constexpr int kNoKeyFrames = 1 << 30;  // the encoder's own number for a distance without an end
constexpr int kSilent = 100;  // beyond every level of libavcodec's log: what fails is thrown

AVPixelFormat pixelFormatOf(int colorSpace) {
  return colorSpace == kGrey ? AV_PIX_FMT_GRAY8 : AV_PIX_FMT_YUV422P;
}

void require(int result, const EncoderSettings& settings, const char* what) {
  if (result < 0)
    throw Ky::KyError("the encoder \"" + settings.name + "\" " + what + ": " +
                      film::reasonOf(result));
}

void requireBitRate(int bitsPerSecond) {
  if (bitsPerSecond < PictureEncoder::kMinBitRate || bitsPerSecond > PictureEncoder::kMaxBitRate)
    throw Ky::KyError("a bit rate of " + std::to_string(bitsPerSecond) +
                      " is not possible; it is " + std::to_string(PictureEncoder::kMinBitRate) +
                      " to " + std::to_string(PictureEncoder::kMaxBitRate) + " bits a second");
}

void requireUsable(const EncoderSettings& settings) {
  requireResolution(settings.format.resolution);
  if (!isColorSpace(settings.format.colorSpace))
    throw Ky::KyError("there is no color space " + std::to_string(settings.format.colorSpace) +
                      "; it is 0, 9 or 10");
  if (!isFrameRate(settings.fps))
    throw Ky::KyError("a frame rate of " + std::to_string(settings.fps) +
                      " is not possible; it is 1 to " + std::to_string(kMaxFps));
  requireBitRate(settings.bitRate);
}

bool takes(const AVCodec& codec, AVPixelFormat format) {
  for (const AVPixelFormat* each = codec.pix_fmts; each && *each != AV_PIX_FMT_NONE; ++each)
    if (*each == format) return true;
  return codec.pix_fmts == nullptr;
}

const AVCodec& findEncoder(const EncoderSettings& settings) {
  const AVCodec* codec = avcodec_find_encoder_by_name(settings.name.c_str());
  if (!codec || codec->id != AV_CODEC_ID_H264)
    throw Ky::KyError("there is no encoder \"" + settings.name +
                      "\" for H.264 here; \"libx264\" is always there");
  if (!takes(*codec, pixelFormatOf(settings.format.colorSpace)))
    throw Ky::KyError("the encoder \"" + settings.name + "\" can't take color space " +
                      std::to_string(settings.format.colorSpace) + "; \"libx264\" takes all");
  return *codec;
}

// The buffer has room for one picture's share: no picture takes longer to send than its time, and
// the encoder plans with all of the share; with a larger one it plans with half of what is in it.
// It stays a tenth and more below what it may take, so it is allowed a tenth more.
void setRate(AVCodecContext& context, int bitsPerSecond) {
  const int allowed = bitsPerSecond + bitsPerSecond / 10;
  context.bit_rate = allowed;
  context.rc_max_rate = allowed;
  context.rc_buffer_size = allowed / context.framerate.num;
}

void configure(AVCodecContext& context, const EncoderSettings& settings) {
  const cv::Size size = sizeOf(settings.format.resolution);
  context.width = size.width;
  context.height = size.height;
  context.pix_fmt = pixelFormatOf(settings.format.colorSpace);
  context.color_range = AVCOL_RANGE_MPEG;
  context.colorspace = AVCOL_SPC_SMPTE170M;  // BT.601
  context.time_base = {1, settings.fps};
  context.framerate = {settings.fps, 1};
  context.gop_size = kNoKeyFrames;
  context.max_b_frames = 0;
  context.thread_count = 1;
  context.log_level_offset = kSilent;
  setRate(context, settings.bitRate);
}

void open(AVCodecContext& context, const AVCodec& codec, const EncoderSettings& settings) {
  AVDictionary* options = nullptr;
  av_dict_set(&options, "preset", "ultrafast", 0);
  av_dict_set(&options, "tune", "zerolatency", 0);
  av_dict_set(&options, "forced-idr", "1", 0);
  const int result = avcodec_open2(&context, &codec, &options);
  av_dict_free(&options);  // those that other encoders don't have are left
  require(result, settings, "can't be started");
}

}  // namespace

PictureEncoder::PictureEncoder(const EncoderSettings& settings) : fSettings(settings) {
  requireUsable(settings);
  const AVCodec& codec = findEncoder(settings);
  fContext.reset(avcodec_alloc_context3(&codec));
  if (!fContext) throw std::bad_alloc();
  configure(*fContext, settings);
  open(*fContext, codec, settings);
  fFrame = film::newFrame(fContext->width, fContext->height, fContext->pix_fmt);
  fFrame->pts = 0;
}

void PictureEncoder::setBitRate(int bitsPerSecond) {
  requireBitRate(bitsPerSecond);
  setRate(*fContext, bitsPerSecond);
}

EncodedPicture PictureEncoder::encode(const Ky::KyBinary& pixels, bool wantsKey) {
  const std::size_t needed = static_cast<std::size_t>(fFrame->width) * fFrame->height *
                             layersOf(fSettings.format.colorSpace);
  if (pixels.size() != needed)
    throw Ky::KyError("a picture to encode has " + std::to_string(pixels.size()) +
                      " bytes; its format needs " + std::to_string(needed));
  require(av_frame_make_writable(fFrame.get()), fSettings, "got no memory for a picture");
  splitIntoPlanes(pixels.data(), fSettings.format.colorSpace, *fFrame);
  fFrame->pict_type = wantsKey ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
  require(avcodec_send_frame(fContext.get(), fFrame.get()), fSettings, "refuses a picture");
  ++fFrame->pts;

  const std::shared_ptr<AVPacket> packet = film::newPacket();
  require(avcodec_receive_packet(fContext.get(), packet.get()), fSettings,
          "has no packet for a picture at once");
  return {{packet, packet->data, static_cast<std::size_t>(packet->size)},
          (packet->flags & AV_PKT_FLAG_KEY) != 0};
}

}  // namespace robot
