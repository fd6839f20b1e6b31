// SPDX-License-Identifier: Apache-2.0
#include "robot/services/picture_stream.h"

#include <chrono>

#include "ky/error.h"
#include "robot/services/image_record.h"

namespace robot {
namespace {

using Clock = std::chrono::steady_clock;

// How long it may take to notice the end.
constexpr std::chrono::milliseconds kPatience{100};
// A camera that begins has no picture yet.
constexpr std::chrono::milliseconds kFirstFrame{500};

// Chooses as many of a camera's pictures as are wished for: it may take more for somebody else.
class Pacing {
 public:
  // Whether the picture that was taken now is one of them.
  bool take(int fps) {
    const auto now = Clock::now();
    const auto period = std::chrono::microseconds(1000000 / fps);
    // Pictures come a little early or late: the nearest to its turn counts.
    if (now + period / 4 < fNext) return false;
    fNext = std::max(fNext + period, now + period / 2);
    return true;
  }

 private:
  Clock::time_point fNext;
};

}  // namespace

PictureStream::PictureStream(std::shared_ptr<const CameraReader> reader,
                             std::unique_ptr<Ky::KyStreamSender> sender)
    : fReader(std::move(reader)), fSender(std::move(sender)), fThread([this] { run(); }) {
}

PictureStream::~PictureStream() {
  fStop = true;
  fThread.join();
}

void PictureStream::run() {
  Pacing pacing;
  std::shared_ptr<const Frame> known;
  while (!fStop && !fSender->isClosed()) {
    const auto frame = fReader->next(known, kPatience);
    if (!frame) {
      sendFailure();
      continue;
    }
    known = frame;
    const Wish wish = fReader->wish();
    if (pacing.take(wish.fps))
      fSender->send(Ky::KyValue::array({"exact", imageRecord(*frame, wish.format)}));
  }
}

void PictureStream::sendFailure() {
  try {
    fReader->newest(kFirstFrame);
  } catch (const Ky::KyError& error) {
    fSender->send(Ky::KyValue::array({"error", error.what()}));
  }
}

}  // namespace robot
