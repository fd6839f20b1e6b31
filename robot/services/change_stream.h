// SPDX-License-Identifier: Apache-2.0
// The changes of some memory keys, on their way to one program.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ky/stream.h"

namespace robot {

// Shared, as it is stored and sent to several at once; null where there is none.
using MemoryValue = std::shared_ptr<const Ky::KyValue>;

// What one item tells.
using MemoryItem = std::vector<std::pair<std::string, MemoryValue>>;

// The first item has the values of all keys that exist, each further one those of all keys that
// have changed since: while the receiver is busy with one, changes gather for the next, the newest
// of each key. So the receiver gets the last state of every key, however slow the link.
// Thread-bound.
class ChangeStream {
 public:
  ChangeStream(std::shared_ptr<Ky::KyStreamSender> sender,
               const std::map<std::string, MemoryValue>& values);

  // False when it is none of its keys.
  bool change(const std::string& key, const MemoryValue& value);
  // What is to be sent now: nothing when nothing has changed, or the receiver is busy.
  std::optional<MemoryItem> take();
  // Whether something has changed that take() has not given.
  bool isWaiting() const;
  const std::shared_ptr<Ky::KyStreamSender>& sender() const { return fSender; }

 private:
  struct Key {
    MemoryValue value;
    bool isChanged = false;
  };
  void noteLosses();

  std::shared_ptr<Ky::KyStreamSender> fSender;
  std::map<std::string, Key> fKeys;
  bool fIsNew = true;
  // Of the sender, as far as it was made good.
  std::uint64_t fLost = 0;
  std::uint64_t fRefused = 0;
  std::vector<std::string> fSent;  // the keys of the last item
  bool fIsOneByOne = false;        // together they were too large for a message
};

}  // namespace robot
