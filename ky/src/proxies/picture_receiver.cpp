// SPDX-License-Identifier: Apache-2.0
#include "proxies/picture_receiver.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ky/proxy.h"

namespace Ky {
namespace {

constexpr const char* kModule = "KyVideoDevice";
constexpr const char* kMethod = "getImageRemote";
// As long as a call: who waits longer has lost the robot.
constexpr std::chrono::milliseconds kPatience{3000};
// Whoever asks more rarely than this gets pictures one by one, each after a new beginning.
constexpr std::chrono::milliseconds kIdle{2000};
// Of pictures that wait: some as they are, all that are encoded.
constexpr std::size_t kMostBytes = 8u << 20;
// H.264 needs every packet: those of three seconds. Of pictures as they are the newest are enough.
constexpr std::size_t kPackets = 90;
constexpr std::size_t kPictures = 2;
// Two pictures that came between two calls are for this one and the next.
constexpr std::size_t kMostWaiting = 2;
// What waits at so many calls in a row waits for nothing.
constexpr int kCallsToWait = 15;
// Streams one after the other that can't be decoded from their beginning on.
constexpr int kMostBroken = 3;

bool isAt(const KyValue& record, std::size_t index, std::optional<int> wanted) {
  return !wanted || !record[index].isInt() || record[index].asInt64() == *wanted;
}

bool isAsWanted(const KyValue& record, const WantedPicture& wanted) {
  if (!record.isArray() || record.size() < 8) return true;  // the reader will say so
  std::optional<int> width;
  if (wanted.resolution) width = 160 << *wanted.resolution;
  return isAt(record, 0, width) && isAt(record, 3, wanted.colorSpace) &&
         isAt(record, 7, wanted.camera);
}

std::string wordsFor(std::int64_t bitRate) {
  if (bitRate == 0) return "exact";
  const auto tenths = std::max<std::int64_t>(1, std::llround(static_cast<double>(bitRate) / 1e5));
  return "H.264, " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " Mbit/s";
}

}  // namespace

PictureReceiver::PictureReceiver(boost::shared_ptr<KyBroker> broker, std::string name)
    : fBroker(std::move(broker)), fName(std::move(name)) {
}

KyValue PictureReceiver::newest(const std::function<WantedPicture()>& wanted) {
  openWhereNeeded();
  fetch();
  const auto end = Clock::now() + kPatience;
  while (fError.empty()) {
    choose();
    const WantedPicture awaited = wanted();
    if (!fRecord.isNothing() && (Clock::now() >= awaited.until || isAsWanted(fRecord, awaited)))
      break;
    if (!waitForOne(fRecord.isNothing() ? end : awaited.until) && fRecord.isNothing()) break;
  }
  if (!fError.empty()) throw KyError(kModule, kMethod, fError);
  if (fRecord.isNothing() || Clock::now() - fArrived > kPatience) throwNothingCame();
  return fRecord;
}

void PictureReceiver::throwNothingCame() {
  const std::string ended = fStream->ended();
  fStream.reset();
  throw KyError(kModule, kMethod,
                ended.empty()
                    ? "no picture came within " + std::to_string(kPatience.count()) + " ms"
                    : "no more pictures come: " + ended);
}

// ---- the stream

void PictureReceiver::openWhereNeeded() {
  if (!fStream || !fStream->ended().empty()) {
    fRecord = {};  // it is old
    open();
  } else if (fEncoding != encoding()) {
    open();
  }
}

std::string PictureReceiver::encoding() const {
  const std::string preferred = fBroker->preference("KyVideoDevice.pictures");
  return preferred.empty() ? "automatic" : preferred;
}

void PictureReceiver::open() {
  fError.clear();
  fWaiting.clear();
  fChain.restart();
  fDescribed.reset();
  fStream.reset();
  fEncoding = encoding();
  auto stream =
      fBroker->receiveStream(fEncoding == "exact" ? kPictures : kPackets, kIdle, kMostBytes);
  fBroker->call(kModule, "openPictures", {fName, stream->id(), fEncoding});
  fStream = std::move(stream);
  fArrived = Clock::now();
}

// The next packet that can be decoded is the first of another stream.
void PictureReceiver::openAfterBreak() {
  const std::string why = fChain.broken();
  if (++fBrokenStreams < kMostBroken) return open();
  fStream.reset();
  throw KyError(kModule, kMethod, "the robot's picture can't be decoded: " + why);
}

// ---- what comes

// All that has come, but of one stream only: else a robot could keep the caller here.
void PictureReceiver::fetch() {
  const KyStreamReceiver* const stream = fStream.get();
  while (stream == fStream.get()) {
    const auto item = fStream->next(std::chrono::milliseconds(0));
    if (!item) return;
    take(item->value);
  }
}

bool PictureReceiver::waitForOne(Clock::time_point end) {
  const auto item = fStream->next(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
  if (item) take(item->value);
  return item.has_value();
}

void PictureReceiver::take(const KyValue& item) {
  fArrived = Clock::now();
  const std::string& kind = item[0].asString();
  fError = kind == "error" ? item[1].asString() : std::string();
  if (kind == "exact") {
    takePicture(item[1], 0);
  } else if (kind == "h264") {
    auto picture = fChain.picture(item);
    if (picture) takePicture(std::move(*picture), item[4].asInt64());
    if (!fChain.broken().empty()) openAfterBreak();
  }
}

void PictureReceiver::takePicture(KyValue record, std::int64_t bitRate) {
  fBrokenStreams = 0;
  fWaiting.push_back(std::move(record));
  if (fWaiting.size() > kMostWaiting) fWaiting.pop_front();
  if (fDescribed && std::abs(bitRate - *fDescribed) <= *fDescribed / 10) return;
  fDescribed = bitRate;
  fStream->describe(wordsFor(bitRate));
}

void PictureReceiver::choose() {
  if (fWaiting.empty()) {
    fWaited = 0;
    return;
  }
  fWaited = fWaiting.size() == 1 ? 0 : fWaited + 1;
  if (fWaited == kCallsToWait) fWaiting.pop_front();
  fRecord = std::move(fWaiting.front());
  fWaiting.pop_front();
}

}  // namespace Ky
