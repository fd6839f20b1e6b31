// SPDX-License-Identifier: Apache-2.0
// The streams that go out from a broker, and those that come in.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ky/stream.h"
#include "transport/outbox.h"
#include "zu/mutex.h"

namespace Ky {

// What the sender's threads and the io thread share; the outbox asks it for the newest value.
struct OutgoingStream : Outbox::Later {
  OutgoingStream(std::string toPeer, std::int64_t underId, const KyLimits& ofMessages)
      : peer(std::move(toPeer)), id(underId), limits(ofMessages) {}
  std::optional<Parts> make() override;
  bool isWanted() const override { return !isClosed && !isAbandoned; }
  void over() override;

  const std::string peer;  // its id
  const std::int64_t id;
  const KyLimits limits;

  mutable zu::Mutex mutex;
  std::optional<KyValue> newest ZU_GUARDED_BY(mutex);
  bool isQueued ZU_GUARDED_BY(mutex) = false;  // the outbox will ask for the newest
  std::int64_t number ZU_GUARDED_BY(mutex) = 0;
  std::atomic<bool> isUnderWay{false};   // some of a value has gone out
  std::atomic<bool> isAbandoned{false};  // that value is not wanted any more
  std::atomic<std::uint64_t> lost{0};
  std::atomic<std::uint64_t> refused{0};
  std::atomic<bool> isClosed{false};
  std::atomic<double> bytesPerSecond{0};
  std::atomic<double> roundTrip{0};  // s
};

struct IncomingStream {
  IncomingStream(std::size_t keep, std::optional<std::chrono::milliseconds> mayRest,
                 std::size_t keepBytes = SIZE_MAX)
      : depth(keep), mostBytes(keepBytes), idle(mayRest) {}
  void push(KyStreamReceiver::Item item) ZU_REQUIRES(mutex);
  KyStreamReceiver::Item pop() ZU_REQUIRES(mutex);  // there must be one
  void clear() ZU_REQUIRES(mutex);

  const std::size_t depth;
  const std::size_t mostBytes;  // of binaries, in all that wait; one value may have more
  const std::optional<std::chrono::milliseconds> idle;

  mutable zu::Mutex mutex;
  zu::ConditionVariable changed;
  std::deque<KyStreamReceiver::Item> items ZU_GUARDED_BY(mutex);
  std::size_t bytes ZU_GUARDED_BY(mutex) = 0;    // of their binaries
  std::int64_t newest ZU_GUARDED_BY(mutex) = 0;  // number
  std::string ended ZU_GUARDED_BY(mutex);
  std::string description ZU_GUARDED_BY(mutex);
  std::chrono::steady_clock::time_point asked ZU_GUARDED_BY(mutex) =
      std::chrono::steady_clock::now();
};

// Thread-bound (the io thread), but for what the streams share with their users.
class OutgoingStreams {
 public:
  // In place of one that the peer has under this id. False, and closed, where the peer has too
  // many.
  bool add(std::shared_ptr<OutgoingStream> stream);
  void remove(const std::shared_ptr<OutgoingStream>& stream);
  // A value waits for the peer's outbox.
  static void queue(const std::shared_ptr<OutgoingStream>& stream, Outbox& outbox);
  // The link was measured.
  void tell(const std::string& peer, const Pace& pace) const;
  // The peer is there again, over another connection: what was under way is lost.
  void goOn(const std::string& peer, Outbox& outbox);
  // The peer wants no more of it, or is gone.
  void close(const std::string& peer, std::int64_t id);
  void closeAll(const std::string& peer);

 private:
  using Streams = std::map<std::pair<std::string, std::int64_t>, std::shared_ptr<OutgoingStream>>;
  std::pair<Streams::const_iterator, Streams::const_iterator> ofPeer(const std::string& peer) const;

  Streams fStreams;
};

// Thread-safe.
class IncomingStreams {
 public:
  void add(std::int64_t id, std::shared_ptr<IncomingStream> stream);
  void remove(std::int64_t id);
  // False when nobody waits for it (any more).
  bool receive(std::int64_t id, KyStreamReceiver::Item item);
  void end(std::int64_t id, const std::string& why);
  void endAll(const std::string& why);
  // Ends those that nobody asks any more, and tells which.
  std::vector<std::int64_t> endIdle();
  // What they carry, by id.
  std::vector<std::string> descriptions() const;

 private:
  std::shared_ptr<IncomingStream> find(std::int64_t id) const;

  mutable zu::Mutex fMutex;
  std::map<std::int64_t, std::shared_ptr<IncomingStream>> fStreams ZU_GUARDED_BY(fMutex);
};

}  // namespace Ky
