// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/frame_feed.h"

#include <utility>

namespace {

constexpr std::chrono::seconds kKept(1);

}  // namespace

struct FrameFeed::State {
  void keepFew() ZU_REQUIRES(fMutex) {
    const bool isWatched = !fWatchers.empty();
    while (fFrames.size() > 1 && (!isWatched || fFrames.size() > kMost || fBytes > kMostBytes ||
                                  fFrames.back()->arrived - fFrames.front()->arrived > kKept)) {
      fBytes -= fFrames.front()->pixels.size();
      fFrames.pop_front();
    }
  }

  mutable zu::Mutex fMutex;
  std::deque<FramePtr> fFrames ZU_GUARDED_BY(fMutex);
  std::size_t fBytes ZU_GUARDED_BY(fMutex) = 0;
  std::uint64_t fPublished ZU_GUARDED_BY(fMutex) = 0;
  std::map<std::uint64_t, std::function<void()>> fWatchers ZU_GUARDED_BY(fMutex);
  std::uint64_t fLastWatcher ZU_GUARDED_BY(fMutex) = 0;
};

FrameFeed::FrameFeed() : fState(std::make_shared<State>()) {
}

FrameFeed::~FrameFeed() = default;

std::unique_ptr<FrameFeed::Watch> FrameFeed::watch(std::function<void()> onFrame) {
  const zu::MutexLock lock(fState->fMutex);
  const std::uint64_t id = ++fState->fLastWatcher;
  fState->fWatchers.emplace(id, std::move(onFrame));
  return std::make_unique<Watch>([state = fState, id] {
    const zu::MutexLock ending(state->fMutex);
    state->fWatchers.erase(id);
    state->keepFew();
  });
}

void FrameFeed::publish(Frame frame) {
  frame.arrived = std::chrono::steady_clock::now();
  const zu::MutexLock lock(fState->fMutex);
  frame.number = ++fState->fPublished;
  fState->fBytes += frame.pixels.size();
  fState->fFrames.push_back(std::make_shared<const Frame>(std::move(frame)));
  fState->keepFew();
  for (const auto& [id, onFrame] : fState->fWatchers) onFrame();
}

FramePtr FrameFeed::newest() const {
  const zu::MutexLock lock(fState->fMutex);
  return fState->fFrames.empty() ? nullptr : fState->fFrames.back();
}

std::vector<FramePtr> FrameFeed::recent() const {
  const zu::MutexLock lock(fState->fMutex);
  return {fState->fFrames.begin(), fState->fFrames.end()};
}
