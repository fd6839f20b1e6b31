// SPDX-License-Identifier: Apache-2.0
// The pictures of a stream that a robot encodes, from H.264.
#pragma once

#include <memory>

#include "ky/binary.h"

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace Ky {

// Takes whatever comes over a network. What is wrong with a packet is a KyError; so is every packet
// after it, after construction and after reset(), until one is a key frame. That packets are
// missing is for the caller to know: without reset() what follows them is decoded onto the wrong
// picture.
//
// Thread-bound.
class PictureDecoder {
 public:
  PictureDecoder();
  ~PictureDecoder();

  // The pixels as an image record of that size and colour space (0, 9 or 10) holds them; in 10 two
  // neighbours have the same chrominance. `packet`: one picture's, of exactly that size.
  KyBinary decode(const KyBinary& packet, int width, int height, int colorSpace);
  // Packets are missing: waits for a key frame.
  void reset();

 private:
  struct Free {
    void operator()(AVCodecContext* context) const;
    void operator()(AVFrame* frame) const;
    void operator()(AVPacket* packet) const;
  };

  void send(const KyBinary& bytes);
  void receive();
  void requireExpected(int width, int height, int colorSpace) const;

  std::unique_ptr<AVCodecContext, Free> fContext;
  std::unique_ptr<AVFrame, Free> fFrame;
  std::unique_ptr<AVPacket, Free> fPacket;
};

}  // namespace Ky
