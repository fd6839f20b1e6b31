// SPDX-License-Identifier: Apache-2.0
// Tells programs what changes in the memory.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ky/peer.h"
#include "robot/services/change_stream.h"
#include "zu/mutex.h"

namespace robot {

// Feeds all streams of changes from one thread of its own. A stream ends when its receiver closes
// it, with forget() and with stop(). Thread-safe.
class MemoryChanges {
 public:
  MemoryChanges();
  ~MemoryChanges();
  MemoryChanges(const MemoryChanges&) = delete;
  MemoryChanges& operator=(const MemoryChanges&) = delete;

  // Throws KyError when the program may not open one of this id.
  void requireRoom(const Ky::KyPeer& peer, std::int64_t id);
  // In place of the one that the program has under this id.
  void open(const Ky::KyPeer& peer, std::int64_t id, ChangeStream stream);
  // Returns at once. `value`: null when it was removed.
  void change(const std::string& key, const MemoryValue& value);
  // The program is gone.
  void forget(const Ky::KyPeer& peer);
  // Ends all; no more can be opened.
  void stop();

 private:
  using Item = std::pair<std::shared_ptr<Ky::KyStreamSender>, MemoryItem>;

  void run();
  void dropClosed() ZU_REQUIRES(fMutex);
  std::vector<Item> takeItems() ZU_REQUIRES(fMutex);
  void rest() ZU_REQUIRES(fMutex);

  zu::Mutex fMutex;
  zu::ConditionVariable fWake;
  bool fIsStopped ZU_GUARDED_BY(fMutex) = false;
  // By the program's id and the stream's.
  std::map<std::pair<std::string, std::int64_t>, ChangeStream> fStreams ZU_GUARDED_BY(fMutex);
  std::thread fThread;
};

}  // namespace robot
