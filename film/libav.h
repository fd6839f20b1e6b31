// SPDX-License-Identifier: Apache-2.0
// What FFmpeg's libraries hand out, held by objects.
#pragma once

#include <memory>
#include <string>

struct AVCodec;
struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace film {

struct FreeLibav {
  void operator()(AVCodecContext* context) const;
  void operator()(AVFrame* frame) const;
  void operator()(AVPacket* packet) const;
};
using CodecContext = std::unique_ptr<AVCodecContext, FreeLibav>;
using VideoFrame = std::unique_ptr<AVFrame, FreeLibav>;
using Packet = std::unique_ptr<AVPacket, FreeLibav>;

// In the library's words, of one of its errors, which are negative.
std::string reasonOf(int error);
// From libav's errors to KyError "WHAT: REASON".
void require(int result, const std::string& what);

// An encoder for frames of this size and format (an AVPixelFormat), to be set up further and
// opened. Throws KyError when there is none of this name.
CodecContext newEncoder(const char* name, int width, int height, int pixelFormat);
// With room for its pixels.
VideoFrame newFrame(int width, int height, int pixelFormat);
Packet newPacket();
// For encoders that hold no picture back.
Packet encode(AVCodecContext& encoder, const AVFrame& frame);

}  // namespace film
