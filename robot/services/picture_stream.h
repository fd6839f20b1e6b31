// SPDX-License-Identifier: Apache-2.0
// A subscriber's pictures, sent without being asked for.
#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "ky/stream.h"
#include "robot/camera/cameras.h"

namespace robot {

// Sends the active camera's pictures as the reader wishes them: ["exact", image record], or
// ["error", text] while there is none. Ends with its destruction; sends no more once the receiver
// has closed the stream. Thread-bound; works on a thread of its own.
class PictureStream {
 public:
  PictureStream(std::shared_ptr<const CameraReader> reader,
                std::unique_ptr<Ky::KyStreamSender> sender);
  ~PictureStream();
  PictureStream(const PictureStream&) = delete;
  PictureStream& operator=(const PictureStream&) = delete;

 private:
  void run();
  void sendFailure();

  const std::shared_ptr<const CameraReader> fReader;
  const std::unique_ptr<Ky::KyStreamSender> fSender;
  std::atomic<bool> fStop{false};
  std::thread fThread;
};

}  // namespace robot
