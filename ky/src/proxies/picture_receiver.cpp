// SPDX-License-Identifier: Apache-2.0
#include "proxies/picture_receiver.h"

#include "ky/proxy.h"

namespace Ky {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kModule = "KyVideoDevice";
constexpr const char* kMethod = "getImageRemote";
// As long as a call: who waits longer has lost the robot.
constexpr std::chrono::milliseconds kPatience{3000};
// Whoever asks more rarely than this gets pictures one by one, each after a new beginning.
constexpr std::chrono::milliseconds kIdle{2000};

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

}  // namespace

PictureReceiver::PictureReceiver(boost::shared_ptr<KyBroker> broker, std::string name)
    : fBroker(std::move(broker)), fName(std::move(name)) {
}

void PictureReceiver::open() {
  fRecord = {};
  fError.clear();
  fStream.reset();
  auto stream = fBroker->receiveStream(1, kIdle);
  fBroker->call(kModule, "openPictures", {fName, stream->id()});
  fStream = std::move(stream);
  fArrived = Clock::now();
}

void PictureReceiver::take(const KyValue& item) {
  fArrived = Clock::now();
  const std::string& kind = item[0].asString();
  fError = kind == "error" ? item[1].asString() : std::string();
  if (kind == "exact") fRecord = item[1];
}

KyValue PictureReceiver::newest(const WantedPicture& wanted) {
  if (!fStream || !fStream->ended().empty()) open();
  while (auto item = fStream->next(std::chrono::milliseconds(0))) take(item->value);
  const auto end = Clock::now() + kPatience;
  while (fError.empty()) {
    const auto now = Clock::now();
    if (!fRecord.isNothing() && (now >= wanted.until || isAsWanted(fRecord, wanted))) break;
    const auto left = (fRecord.isNothing() ? end : wanted.until) - now;
    auto item = fStream->next(std::chrono::ceil<std::chrono::milliseconds>(left));
    if (item) take(item->value);
    if (!item && fRecord.isNothing()) break;
  }
  if (!fError.empty()) throw KyError(kModule, kMethod, fError);
  if (fRecord.isNothing() || Clock::now() - fArrived > kPatience) {
    fStream.reset();
    throw KyError(kModule, kMethod,
                  "no picture came within " + std::to_string(kPatience.count()) + " ms");
  }
  return fRecord;
}

}  // namespace Ky
