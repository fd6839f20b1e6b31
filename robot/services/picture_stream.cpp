// SPDX-License-Identifier: Apache-2.0
#include "robot/services/picture_stream.h"

#include <chrono>
#include <utility>

#include "ky/error.h"
#include "robot/services/image_record.h"

namespace robot {
namespace {

using Clock = std::chrono::steady_clock;

// How long it may take to notice the end.
constexpr std::chrono::milliseconds kPatience{100};
// The same while something is under way that has to be looked after.
constexpr std::chrono::milliseconds kGlance{4};
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
                             std::unique_ptr<Ky::KyStreamSender> sender,
                             const PictureChoice& choice, std::shared_ptr<SharedEncoders> encoders)
    : fReader(std::move(reader)),
      fSender(std::move(sender)),
      fChoice(choice),
      fEncoded(std::move(encoders)),
      fThread([this] { run(); }) {
}

PictureStream::~PictureStream() {
  stop();
}

PictureChoice PictureStream::stop() {
  fStop = true;
  if (fThread.joinable()) fThread.join();
  PictureChoice choice = fChoice;
  choice.goOn();
  return choice;
}

void PictureStream::run() {
  Pacing pacing;
  std::shared_ptr<const Frame> known;
  auto waitingSince = Clock::now();
  while (!fStop && !fSender->isClosed()) {
    const auto frame = fReader->next(known, patience());
    const auto now = Clock::now();
    if (fChoice.givesUp(link(), now)) giveUp();
    sendPackets();
    if (!frame) {
      if (now - waitingSince < kPatience) continue;
      sendFailure();
      waitingSince = now;
      continue;
    }
    waitingSince = now;
    known = frame;
    const Wish wish = fReader->wish();
    if (pacing.take(wish.fps)) show(frame, wish);
  }
  fEncoded.rest();
}

// How long to wait for the next frame, with nothing else to look after.
std::chrono::milliseconds PictureStream::patience() const {
  return fChoice.isWatching() || fEncoded.hasNext() ? kGlance : kPatience;
}

void PictureStream::show(const std::shared_ptr<const Frame>& frame, const Wish& wish) {
  const ImageFormat& format = wish.format;
  const DuePicture due{format.resolution, frame->pixels(format).size(),
                       std::chrono::duration<double>(1.0 / wish.fps)};
  switch (fChoice.due(due, link(), Clock::now())) {
    case PictureChoice::Turn::Exact:
      if (!fChoice.isEncoding()) fEncoded.rest();
      fSender->send(Ky::KyValue::array({"exact", imageRecord(*frame, format)}));
      break;
    case PictureChoice::Turn::Encoded:
      encode(frame, wish);
      break;
    case PictureChoice::Turn::Nothing:
      break;
  }
}

void PictureStream::encode(const std::shared_ptr<const Frame>& frame, const Wish& wish) {
  noticeLoss();
  try {
    fEncoded.take(frame, wish.format, wish.fps, fChoice.bitRate());
    sendPackets();
  } catch (const Ky::KyError& error) {
    fSender->send(Ky::KyValue::array({"error", error.what()}));
  }
}

// None takes the place of another.
void PictureStream::sendPackets() {
  while (fEncoded.hasNext() && fSender->isFree()) {
    const auto packet = fEncoded.next();
    if (!packet) return;
    const SharedPacket& made = packet->made;
    fSender->send(
        Ky::KyValue::array({"h264", imageRecord(made.format, made.time, made.bytes, made.camera),
                            packet->number, made.isKey, made.bitRate}));
  }
}

void PictureStream::noticeLoss() {
  const std::uint64_t lost = fSender->lost();
  if (std::exchange(fLost, lost) != lost) fEncoded.restart();
}

// Only a picture as it is is given up: no packet is lost by it.
void PictureStream::giveUp() {
  noticeLoss();
  fSender->abandon();
  fLost = fSender->lost();
}

void PictureStream::sendFailure() {
  try {
    fReader->newest(kFirstFrame);
  } catch (const Ky::KyError& error) {
    fSender->send(Ky::KyValue::array({"error", error.what()}));
  }
}

LinkState PictureStream::link() const {
  return {fSender->isIdle() && !fEncoded.hasNext(), fSender->bytesPerSecond(),
          fSender->roundTrip()};
}

}  // namespace robot
