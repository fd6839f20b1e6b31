// SPDX-License-Identifier: Apache-2.0
#include "robot/services/memory_changes.h"

#include <algorithm>
#include <chrono>

#include "ky/error.h"

namespace robot {
namespace {

using Ky::KyValue;

constexpr std::ptrdiff_t kMostStreams = 32;  // of one program
// How soon it is noticed that a busy receiver is free, and that a connection broke, after which
// nothing has to change.
constexpr std::chrono::milliseconds kRetry{5};
constexpr std::chrono::milliseconds kLook{250};

KyValue toValue(const MemoryItem& item) {
  KyValue::Array changes;
  changes.reserve(item.size());
  for (const auto& [key, value] : item)
    changes.push_back(KyValue::array({key, value ? *value : KyValue()}));
  return changes;
}

}  // namespace

MemoryChanges::MemoryChanges() : fThread([this] { run(); }) {
}

MemoryChanges::~MemoryChanges() {
  stop();
}

void MemoryChanges::stop() {
  {
    const zu::MutexLock guard(fMutex);
    fIsStopped = true;
    fStreams.clear();
    fWake.notifyAll();
  }
  if (fThread.joinable()) fThread.join();
}

void MemoryChanges::requireRoom(const Ky::KyPeer& peer, std::int64_t id) {
  const zu::MutexLock guard(fMutex);
  dropClosed();
  const auto others = std::count_if(fStreams.begin(), fStreams.end(), [&](const auto& entry) {
    return entry.first.first == peer.id && entry.first.second != id;
  });
  if (others >= kMostStreams)
    throw Ky::KyError("there are " + std::to_string(kMostStreams) +
                      " streams of changes already; close one first");
}

void MemoryChanges::open(const Ky::KyPeer& peer, std::int64_t id, ChangeStream stream) {
  const zu::MutexLock guard(fMutex);
  if (fIsStopped) return;
  fStreams.insert_or_assign({peer.id, id}, std::move(stream));
  fWake.notifyAll();
}

void MemoryChanges::change(const std::string& key, const MemoryValue& value) {
  const zu::MutexLock guard(fMutex);
  bool isWatched = false;
  for (auto& [id, stream] : fStreams) isWatched |= stream.change(key, value);
  if (isWatched) fWake.notifyAll();
}

void MemoryChanges::forget(const Ky::KyPeer& peer) {
  const zu::MutexLock guard(fMutex);
  std::erase_if(fStreams, [&](const auto& entry) { return entry.first.first == peer.id; });
}

void MemoryChanges::run() {
  const zu::MutexLock guard(fMutex);
  while (!fIsStopped) {
    dropClosed();
    const std::vector<Item> items = takeItems();
    if (items.empty()) {
      rest();
      continue;
    }
    const zu::MutexUnlock meanwhile(fMutex);
    for (const auto& [sender, item] : items) sender->send(toValue(item));
  }
}

void MemoryChanges::dropClosed() {
  std::erase_if(fStreams, [](const auto& entry) { return entry.second.sender()->isClosed(); });
}

std::vector<MemoryChanges::Item> MemoryChanges::takeItems() {
  std::vector<Item> items;
  for (auto& [id, stream] : fStreams)
    if (auto item = stream.take()) items.emplace_back(stream.sender(), std::move(*item));
  return items;
}

void MemoryChanges::rest() {
  if (fStreams.empty()) return fWake.wait(fMutex);
  const bool isHeldBack = std::any_of(fStreams.begin(), fStreams.end(),
                                      [](const auto& entry) { return entry.second.isWaiting(); });
  fWake.waitUntil(fMutex, std::chrono::steady_clock::now() + (isHeldBack ? kRetry : kLook));
}

}  // namespace robot
