// SPDX-License-Identifier: Apache-2.0
#include "video/picture_decoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <algorithm>
#include <array>
#include <new>

#include "ky/error.h"
#include "ky/video_device_proxy.h"
#include "video/interleaving.h"

namespace Ky {
namespace {

// No encoder makes more of a picture than its pixels are, but for some headers.
constexpr std::size_t kMaxPacket = std::size_t{kMaxImageWidth} * kMaxImageHeight * 3;
constexpr int kSilent = 100;  // beyond every level of libavcodec's log: what fails is thrown

[[noreturn]] void refuse(const std::string& what) {
  throw KyError(what + "; the next key frame will bring a picture again");
}

std::string reasonOf(int error) {
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(error, text.data(), text.size());
  return text.data();
}

std::string sizeText(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

void requirePossible(const KyBinary& packet, int width, int height, int colorSpace) {
  if (width <= 0 || height <= 0 || width > kMaxImageWidth || height > kMaxImageHeight ||
      width % 2 != 0)
    throw KyError("a video picture can't have " + sizeText(width, height) +
                  " pixels; an even width is possible, up to " +
                  sizeText(kMaxImageWidth, kMaxImageHeight));
  if (imageBytes(width, height, colorSpace) == 0)
    throw KyError("a video picture can't have color space " + std::to_string(colorSpace) +
                  "; 0, 9 and 10 are possible");
  if (packet.empty()) refuse("a video packet is empty");
  if (packet.size() > kMaxPacket)
    refuse("a video packet has " + std::to_string(packet.size()) + " bytes; " +
           std::to_string(kMaxPacket) + " are possible");
}

bool isExpected(int pixelFormat, int colorSpace) {
  if (colorSpace != 0) return pixelFormat == AV_PIX_FMT_YUV422P;
  return pixelFormat == AV_PIX_FMT_GRAY8 || pixelFormat == AV_PIX_FMT_YUV420P;
}

AVCodecContext* openDecoder() {
  const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_H264);
  if (!codec) throw KyError("this computer's libavcodec can't decode H.264; install Debian's");
  AVCodecContext* context = avcodec_alloc_context3(codec);
  if (!context) throw std::bad_alloc();
  context->thread_count = 1;
  context->flags |= AV_CODEC_FLAG_LOW_DELAY;
  context->err_recognition = AV_EF_EXPLODE;
  context->max_pixels = std::int64_t{kMaxImageWidth} * kMaxImageHeight;
  context->log_level_offset = kSilent;
  if (const int result = avcodec_open2(context, codec, nullptr); result < 0) {
    avcodec_free_context(&context);
    throw KyError("the decoder for H.264 can't be started: " + reasonOf(result));
  }
  return context;
}

}  // namespace

void PictureDecoder::Free::operator()(AVCodecContext* context) const {
  avcodec_free_context(&context);
}

void PictureDecoder::Free::operator()(AVFrame* frame) const {
  av_frame_free(&frame);
}

void PictureDecoder::Free::operator()(AVPacket* packet) const {
  av_packet_free(&packet);
}

PictureDecoder::PictureDecoder()
    : fContext(openDecoder()), fFrame(av_frame_alloc()), fPacket(av_packet_alloc()) {
  if (!fFrame || !fPacket) throw std::bad_alloc();
}

PictureDecoder::~PictureDecoder() = default;

// A new decoder, which shows nothing before a key frame. Nothing is left of what a peer may have
// told the old one.
void PictureDecoder::reset() {
  fContext.reset(openDecoder());
}

KyBinary PictureDecoder::decode(const KyBinary& packet, int width, int height, int colorSpace) {
  try {
    requirePossible(packet, width, height, colorSpace);
    send(packet);
    receive();
    requireExpected(width, height, colorSpace);
    return interleaved(*fFrame, colorSpace);
  } catch (const KyError&) {
    reset();
    throw;
  }
}

void PictureDecoder::send(const KyBinary& bytes) {
  // Copied: the decoder reads a little beyond the end.
  if (av_new_packet(fPacket.get(), static_cast<int>(bytes.size())) < 0) throw std::bad_alloc();
  std::copy_n(bytes.data(), bytes.size(), fPacket->data);
  const int result = avcodec_send_packet(fContext.get(), fPacket.get());
  av_packet_unref(fPacket.get());
  if (result < 0) refuse("a video packet is damaged (" + reasonOf(result) + ")");
}

void PictureDecoder::receive() {
  const int result = avcodec_receive_frame(fContext.get(), fFrame.get());
  if (result == AVERROR(EAGAIN)) refuse("a video packet brings no whole picture");
  if (result < 0) refuse("a video packet is damaged (" + reasonOf(result) + ")");
  if (fFrame->decode_error_flags != 0 || (fFrame->flags & AV_FRAME_FLAG_CORRUPT) != 0)
    refuse("a video packet is damaged (parts of its picture are missing)");
}

void PictureDecoder::requireExpected(int width, int height, int colorSpace) const {
  if (fFrame->width != width || fFrame->height != height)
    refuse("a video packet holds a picture of " + sizeText(fFrame->width, fFrame->height) +
           " pixels instead of " + sizeText(width, height));
  if (!isExpected(fFrame->format, colorSpace))
    refuse("a video packet holds other kinds of planes than color space " +
           std::to_string(colorSpace) + " needs");
}

}  // namespace Ky
