// SPDX-License-Identifier: Apache-2.0
#include "support/link_stream.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace {

using std::chrono::duration_cast;
using std::chrono::nanoseconds;

constexpr std::chrono::milliseconds kBuffer{100};  // so much may wait for its turn to leave
constexpr std::size_t kRefused = 256u << 10;       // bytes that a slow receiver leaves to us
constexpr std::size_t kUnderWay = 64u << 20;       // bytes, more than 1 Gbit/s has in 0.5 s
constexpr std::size_t kRead = 64u << 10;
constexpr std::size_t kPacket = 1448;

bool isTemporary(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

LinkStream::LinkStream(int from, int to, const LinkSettings& settings, Time now)
    : fFrom(from), fTo(to), fBusyUntil(now) {
  apply(settings, now);
}

void LinkStream::apply(const LinkSettings& settings, Time now) {
  fSettings = settings;
  fSettingsSince = now;
  fDamage = DamagedBytes(settings);
  fBusyUntil = std::min(fBusyUntil, now);
  for (Chunk& chunk : fQueue) chunk.due = std::min(chunk.due, now + settings.delay);
}

void LinkStream::cut() {
  if (fCut) return;
  fCut = true;
  fQueue.clear();
  fQueued = fWritten = 0;
  if (!fEndWritten) shutdown(fTo, SHUT_WR);
  fEndWritten = true;
}

bool LinkStream::wantsToRead(Time now) const {
  if (fEndRead) return false;
  if (fCut) return true;
  if (fQueued > kUnderWay || (wantsToWrite(now) && fQueued > kRefused)) return false;
  return fBusyUntil - now <= kBuffer;
}

bool LinkStream::wantsToWrite(Time now) const {
  return !fQueue.empty() && fQueue.front().due <= now;
}

std::optional<LinkStream::Time> LinkStream::nextTurn(Time now) const {
  std::optional<Time> next;
  if (!fQueue.empty() && fQueue.front().due > now) next = fQueue.front().due;
  const Time room = fBusyUntil - kBuffer;
  if (!fEndRead && !fCut && room > now && (!next || room < *next)) next = room;
  return next;
}

bool LinkStream::read(Time now) {
  std::array<char, kRead> buffer;
  const ssize_t count = recv(fFrom, buffer.data(), readSize(), 0);
  if (count < 0) return isTemporary(errno);
  if (count == 0) fEndRead = true;
  if (fCut) return true;
  const std::size_t size = static_cast<std::size_t>(count);
  std::string bytes = fDamage.take({buffer.data(), size});
  if (fEndRead || !bytes.empty()) queue(std::move(bytes), size, now);
  return true;
}

// Small enough not to be noticed: what a slow link takes in one piece, it gives in one piece.
std::size_t LinkStream::readSize() const {
  if (fCut || fSettings.bitsPerSecond == 0) return kRead;
  return std::clamp<std::size_t>(fSettings.bitsPerSecond / 8 / 1000, kPacket, kRead);
}

void LinkStream::queue(std::string bytes, std::size_t size, Time now) {
  fBusyUntil = departure(size, now);
  Time due = fBusyUntil + fSettings.delay;
  if (!fQueue.empty()) due = std::max(due, fQueue.back().due);
  fQueued += bytes.size();
  fQueue.push_back({std::move(bytes), due});
}

// When the last of so many bytes will have left.
LinkStream::Time LinkStream::departure(std::size_t size, Time now) const {
  const Time begin = afterStall(std::max(now, fBusyUntil));
  if (fSettings.bitsPerSecond == 0) return begin;
  const double seconds =
      static_cast<double>(size) * 8 / static_cast<double>(fSettings.bitsPerSecond);
  return begin + duration_cast<nanoseconds>(std::chrono::duration<double>(seconds));
}

LinkStream::Time LinkStream::afterStall(Time time) const {
  const nanoseconds every = fSettings.stallEvery, pause = fSettings.stallFor;
  if (every.count() <= 0 || pause.count() <= 0) return time;
  const nanoseconds turn = (time - fSettingsSince) % every;
  return turn < every - pause ? time : time + (every - turn);
}

bool LinkStream::write(Time now) {
  while (wantsToWrite(now)) {
    const Chunk& chunk = fQueue.front();
    if (chunk.bytes.empty()) {
      shutdown(fTo, SHUT_WR);
      fEndWritten = true;
    } else {
      const ssize_t count = send(fTo, chunk.bytes.data() + fWritten, chunk.bytes.size() - fWritten,
                                 MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count < 0) return isTemporary(errno);
      fWritten += static_cast<std::size_t>(count);
      if (fWritten < chunk.bytes.size()) return true;
    }
    fQueued -= chunk.bytes.size();
    fWritten = 0;
    fQueue.pop_front();
  }
  return true;
}
