// SPDX-License-Identifier: Apache-2.0
#include "broker/streams.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

#include "zu/log.h"

namespace Ky {
namespace {

// Of one peer; each takes memory here, and a module's time.
constexpr std::ptrdiff_t kMostStreams = 64;

// Of what counts in a large value.
std::size_t binaryBytes(const KyValue& value) {
  if (value.isBinary()) return value.asBinary().size();
  std::size_t bytes = 0;
  if (value.isArray())
    for (const KyValue& element : value.asArray()) bytes += binaryBytes(element);
  return bytes;
}

}  // namespace

// ---- one that goes out

std::optional<Parts> OutgoingStream::make() {
  std::optional<KyValue> value;
  std::int64_t taken = 0;
  {
    const zu::MutexLock guard(mutex);
    isQueued = false;
    isAbandoned = false;
    value = std::exchange(newest, std::nullopt);
    if (!value || isClosed) return std::nullopt;
    isUnderWay = true;
    taken = ++number;
  }
  try {
    return encode(itemMessage(id, taken, std::move(*value)), limits);
  } catch (const KyError& error) {
    {
      const zu::MutexLock guard(mutex);
      --number;
    }
    ++refused;
    ++lost;
    isUnderWay = false;
    zu::log::error("ky", "stream") << "a value can't be sent: " << error.what();
    return std::nullopt;
  }
}

void OutgoingStream::over() {
  isUnderWay = false;
}

// ---- outgoing

bool OutgoingStreams::add(std::shared_ptr<OutgoingStream> stream) {
  const std::pair key(stream->peer, stream->id);
  const auto [first, last] = ofPeer(stream->peer);
  if (const auto known = fStreams.find(key); known != fStreams.end()) {
    known->second->isClosed = true;
  } else if (std::distance(first, last) >= kMostStreams) {
    zu::log::warning("ky", "stream") << "refused: the peer has " << kMostStreams << " streams open";
    stream->isClosed = true;
    return false;
  }
  fStreams[key] = std::move(stream);
  return true;
}

void OutgoingStreams::remove(const std::shared_ptr<OutgoingStream>& stream) {
  const auto known = fStreams.find({stream->peer, stream->id});
  if (known != fStreams.end() && known->second == stream) fStreams.erase(known);
}

std::pair<OutgoingStreams::Streams::const_iterator, OutgoingStreams::Streams::const_iterator>
OutgoingStreams::ofPeer(const std::string& peer) const {
  using Ids = std::numeric_limits<std::int64_t>;
  return {fStreams.lower_bound({peer, Ids::min()}), fStreams.upper_bound({peer, Ids::max()})};
}

void OutgoingStreams::queue(const std::shared_ptr<OutgoingStream>& stream, Outbox& outbox) {
  outbox.addLater(stream, std::chrono::steady_clock::now());
}

void OutgoingStreams::tell(const std::string& peer, const Pace& pace) const {
  const auto [first, last] = ofPeer(peer);
  for (auto at = first; at != last; ++at) {
    at->second->bytesPerSecond = pace.bytesPerSecond();
    at->second->roundTrip = pace.roundTrip().count();
  }
}

void OutgoingStreams::goOn(const std::string& peer, Outbox& outbox) {
  const auto [first, last] = ofPeer(peer);
  for (auto at = first; at != last; ++at) {
    ++at->second->lost;
    bool isWaiting = false;
    {
      const zu::MutexLock guard(at->second->mutex);
      isWaiting = at->second->newest.has_value();
      at->second->isQueued = isWaiting;
    }
    at->second->isUnderWay = false;
    if (isWaiting) queue(at->second, outbox);
  }
}

void OutgoingStreams::close(const std::string& peer, std::int64_t id) {
  const auto known = fStreams.find({peer, id});
  if (known == fStreams.end()) return;
  known->second->isClosed = true;
  fStreams.erase(known);
}

void OutgoingStreams::closeAll(const std::string& peer) {
  std::erase_if(fStreams, [&](const auto& entry) {
    if (entry.first.first != peer) return false;
    entry.second->isClosed = true;
    return true;
  });
}

// ---- incoming

void IncomingStream::push(KyStreamReceiver::Item item) {
  bytes += binaryBytes(item.value);
  items.push_back(std::move(item));
  while (items.size() > depth || (items.size() > 1 && bytes > mostBytes)) pop();
}

KyStreamReceiver::Item IncomingStream::pop() {
  KyStreamReceiver::Item item = std::move(items.front());
  items.pop_front();
  bytes -= binaryBytes(item.value);
  return item;
}

void IncomingStream::clear() {
  items.clear();
  bytes = 0;
}

void IncomingStreams::add(std::int64_t id, std::shared_ptr<IncomingStream> stream) {
  const zu::MutexLock guard(fMutex);
  fStreams[id] = std::move(stream);
}

void IncomingStreams::remove(std::int64_t id) {
  const zu::MutexLock guard(fMutex);
  fStreams.erase(id);
}

std::shared_ptr<IncomingStream> IncomingStreams::find(std::int64_t id) const {
  const zu::MutexLock guard(fMutex);
  const auto found = fStreams.find(id);
  return found == fStreams.end() ? nullptr : found->second;
}

bool IncomingStreams::receive(std::int64_t id, KyStreamReceiver::Item item) {
  const auto stream = find(id);
  if (!stream) return false;
  const zu::MutexLock guard(stream->mutex);
  if (!stream->ended.empty()) return false;
  // A number that was there already is a value that came twice.
  if (item.number <= stream->newest) return true;
  stream->newest = item.number;
  stream->push(std::move(item));
  stream->changed.notifyAll();
  return true;
}

void IncomingStreams::end(std::int64_t id, const std::string& why) {
  const auto stream = find(id);
  if (!stream) return;
  const zu::MutexLock guard(stream->mutex);
  if (!stream->ended.empty()) return;
  stream->ended = why.empty() ? "no reason was given" : why;
  stream->changed.notifyAll();
}

void IncomingStreams::endAll(const std::string& why) {
  std::vector<std::int64_t> ids;
  {
    const zu::MutexLock guard(fMutex);
    for (const auto& [id, stream] : fStreams) ids.push_back(id);
  }
  for (const std::int64_t id : ids) end(id, why);
}

std::vector<std::int64_t> IncomingStreams::endIdle() {
  const auto now = std::chrono::steady_clock::now();
  std::vector<std::int64_t> idle;
  const zu::MutexLock guard(fMutex);
  for (const auto& [id, stream] : fStreams) {
    const zu::MutexLock ofStream(stream->mutex);
    if (!stream->idle || !stream->ended.empty() || now - stream->asked < *stream->idle) continue;
    stream->ended = "nobody asked for more";
    stream->clear();
    idle.push_back(id);
  }
  return idle;
}

std::vector<std::string> IncomingStreams::descriptions() const {
  std::vector<std::string> all;
  const zu::MutexLock guard(fMutex);
  for (const auto& [id, stream] : fStreams) {
    const zu::MutexLock ofStream(stream->mutex);
    if (stream->ended.empty() && !stream->description.empty()) all.push_back(stream->description);
  }
  return all;
}

// ---- what the users hold

KyStreamSender::KyStreamSender(std::shared_ptr<OutgoingStream> stream,
                               std::function<void()> onWaiting, std::function<void()> onEnd)
    : fStream(std::move(stream)), fOnWaiting(std::move(onWaiting)), fOnEnd(std::move(onEnd)) {
}

KyStreamSender::~KyStreamSender() {
  fOnEnd();
}

void KyStreamSender::send(KyValue value) {
  if (fStream->isClosed) return;
  {
    const zu::MutexLock guard(fStream->mutex);
    if (fStream->newest) ++fStream->lost;
    fStream->newest = std::move(value);
    if (std::exchange(fStream->isQueued, true)) return;
  }
  fOnWaiting();
}

bool KyStreamSender::isFree() const {
  const zu::MutexLock guard(fStream->mutex);
  return !fStream->newest;
}

bool KyStreamSender::isIdle() const {
  const zu::MutexLock guard(fStream->mutex);
  return !fStream->newest && !fStream->isUnderWay;
}

void KyStreamSender::abandon() {
  {
    const zu::MutexLock guard(fStream->mutex);
    if (std::exchange(fStream->newest, std::nullopt)) ++fStream->lost;
    if (!fStream->isUnderWay || fStream->isAbandoned.exchange(true)) return;
    ++fStream->lost;
  }
  fOnWaiting();
}

std::uint64_t KyStreamSender::lost() const {
  return fStream->lost;
}

std::uint64_t KyStreamSender::refused() const {
  return fStream->refused;
}

bool KyStreamSender::isClosed() const {
  return fStream->isClosed;
}

double KyStreamSender::bytesPerSecond() const {
  return fStream->bytesPerSecond;
}

std::chrono::duration<double> KyStreamSender::roundTrip() const {
  return std::chrono::duration<double>(fStream->roundTrip.load());
}

KyStreamReceiver::KyStreamReceiver(std::int64_t id, std::shared_ptr<IncomingStream> stream,
                                   std::function<void()> onClose)
    : fId(id), fStream(std::move(stream)), fOnClose(std::move(onClose)) {
}

KyStreamReceiver::~KyStreamReceiver() {
  fOnClose();
}

std::optional<KyStreamReceiver::Item> KyStreamReceiver::next(std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  const zu::MutexLock guard(fStream->mutex);
  fStream->asked = end;
  while (fStream->items.empty() && fStream->ended.empty() &&
         fStream->changed.waitUntil(fStream->mutex, end)) {
  }
  fStream->asked = std::chrono::steady_clock::now();
  if (fStream->items.empty()) return std::nullopt;
  return fStream->pop();
}

std::string KyStreamReceiver::ended() const {
  const zu::MutexLock guard(fStream->mutex);
  return fStream->ended;
}

void KyStreamReceiver::describe(const std::string& text) {
  const zu::MutexLock guard(fStream->mutex);
  fStream->description = text;
}

}  // namespace Ky
