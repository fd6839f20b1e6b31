// SPDX-License-Identifier: Apache-2.0
// A subscriber's pictures, sent without being asked for.
#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "ky/stream.h"
#include "robot/camera/cameras.h"
#include "robot/streaming/encoded_pictures.h"
#include "robot/streaming/picture_choice.h"

namespace robot {

// Sends the active camera's pictures as the reader wishes them: ["exact", image record], ["h264",
// image record with the packet in place of the pixels, number of the packet, is it a key frame, bit
// rate], or ["error", text] while there is none. Ends with its destruction; sends no more once the
// receiver has closed the stream. Thread-bound; works on a thread of its own.
class PictureStream {
 public:
  PictureStream(std::shared_ptr<const CameraReader> reader,
                std::unique_ptr<Ky::KyStreamSender> sender, const PictureChoice& choice,
                std::shared_ptr<SharedEncoders> encoders);
  ~PictureStream();
  PictureStream(const PictureStream&) = delete;
  PictureStream& operator=(const PictureStream&) = delete;

  // Ends it. What was found out of the link, for a stream that takes its place.
  PictureChoice stop();

 private:
  using Clock = std::chrono::steady_clock;

  void run();
  std::chrono::milliseconds patience() const;
  void show(const std::shared_ptr<const Frame>& frame, const Wish& wish);
  void encode(const std::shared_ptr<const Frame>& frame, const Wish& wish);
  void sendPackets();
  void noticeLoss();
  void giveUp();
  void sendFailure();
  LinkState link() const;

  const std::shared_ptr<const CameraReader> fReader;
  const std::unique_ptr<Ky::KyStreamSender> fSender;
  std::atomic<bool> fStop{false};
  // The thread's own, until it has ended:
  PictureChoice fChoice;
  EncodedPictures fEncoded;
  std::uint64_t fLost = 0;  // values, by the time of the last packet
  std::thread fThread;
};

}  // namespace robot
