// SPDX-License-Identifier: Apache-2.0
#include "film/libav.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <array>
#include <new>

#include "ky/error.h"

namespace film {
namespace {

constexpr int kSilent = 100;  // beyond every level of libavcodec's log: what fails is thrown

template <class Held>
Held held(typename Held::pointer raw) {
  if (!raw) throw std::bad_alloc();
  return Held(raw);
}

}  // namespace

void FreeLibav::operator()(AVCodecContext* context) const {
  avcodec_free_context(&context);
}

void FreeLibav::operator()(AVFrame* frame) const {
  av_frame_free(&frame);
}

void FreeLibav::operator()(AVPacket* packet) const {
  av_packet_free(&packet);
}

std::string reasonOf(int error) {
  std::array<char, AV_ERROR_MAX_STRING_SIZE> reason{};
  av_strerror(error, reason.data(), reason.size());
  return reason.data();
}

void require(int result, const std::string& what) {
  if (result < 0) throw Ky::KyError(what + ": " + reasonOf(result));
}

CodecContext newEncoder(const char* name, int width, int height, int pixelFormat) {
  const AVCodec* codec = avcodec_find_encoder_by_name(name);
  if (!codec)
    throw Ky::KyError(std::string("FFmpeg has no encoder \"") + name + "\" on this computer");
  auto context = held<CodecContext>(avcodec_alloc_context3(codec));
  context->width = width;
  context->height = height;
  context->pix_fmt = static_cast<AVPixelFormat>(pixelFormat);
  context->log_level_offset = kSilent;
  return context;
}

VideoFrame newFrame(int width, int height, int pixelFormat) {
  auto frame = held<VideoFrame>(av_frame_alloc());
  frame->width = width;
  frame->height = height;
  frame->format = pixelFormat;
  if (av_frame_get_buffer(frame.get(), 0) < 0) throw std::bad_alloc();
  return frame;
}

Packet newPacket() {
  return held<Packet>(av_packet_alloc());
}

Packet encode(AVCodecContext& encoder, const AVFrame& frame) {
  require(avcodec_send_frame(&encoder, &frame), "a picture can't be encoded");
  Packet packet = newPacket();
  require(avcodec_receive_packet(&encoder, packet.get()), "a picture can't be encoded at once");
  return packet;
}

}  // namespace film
