// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/moment.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int64_t kSecond = 1000000;
constexpr std::int64_t kMostHeld = kSecond / 2;
constexpr std::int64_t kJump = 2 * kSecond;  // of the clock, between two looks
constexpr std::int64_t kFall = 10;           // a hold of 100 ms ends in a second

// Those at the end whose times follow each other: what came before a jump of the clock can't be
// compared.
std::vector<FramePtr> comparable(const std::vector<FramePtr>& frames) {
  std::size_t first = frames.size() - 1;
  const std::int64_t newest = frames.back()->timestamp;
  while (first > 0 && frames[first - 1]->timestamp <= frames[first]->timestamp &&
         newest - frames[first - 1]->timestamp <= kJump)
    --first;
  return {frames.begin() + static_cast<std::ptrdiff_t>(first), frames.end()};
}

// How far frames, the oldest first, are behind the newest one.
class Distances {
 public:
  explicit Distances(const std::vector<FramePtr>& frames) : fFrames(frames) {}

  std::size_t most() const { return fFrames.size() - 1; }
  const FramePtr& frame(std::size_t back) const { return fFrames[most() - back]; }
  std::int64_t behind(std::size_t back) const {
    return frame(0)->timestamp - frame(back)->timestamp;
  }
  std::int64_t period() const {
    return most() > 0 ? behind(most()) / static_cast<std::int64_t>(most()) : 0;
  }

  // The frame that is about as far behind as that.
  std::size_t nearest(std::int64_t held) const {
    std::size_t back = 0;
    while (back < most() && behind(back) < held - period() / 2) ++back;
    return back;
  }
  // Frames come a little early and late, which is no reason to repeat one, or to leave one out.
  bool isNear(std::size_t back, std::int64_t held) const {
    const std::int64_t margin = period() * 3 / 4;
    return back <= most() && behind(back) >= held - margin && behind(back) <= held + margin;
  }

 private:
  const std::vector<FramePtr>& fFrames;
};

std::size_t framesSince(const std::vector<FramePtr>& frames, const FramePtr& shown) {
  const auto found = std::find(frames.begin(), frames.end(), shown);
  return found == frames.end() ? frames.size() : static_cast<std::size_t>(frames.end() - found) - 1;
}

}  // namespace

Moment::Shown Moment::look(const std::vector<FramePtr>& frames, std::vector<OverlaySource> sources,
                           const std::set<std::string>& hidden) {
  const std::int64_t newest = frames.empty() ? 0 : frames.back()->timestamp;
  follow(newest);
  remember(std::move(sources), newest);
  const bool rises = decideHold(hidden, newest);
  Shown shown;
  if (!frames.empty()) shown.frame = choose(comparable(frames), rises);
  fLastShown = shown.frame;
  for (const auto& [key, history] : fHistories)
    shown.sources.push_back(sourceAt(key, shown.frame, hidden.count(key) > 0));
  if (shown.frame) shown.behind = newest - shown.frame->timestamp;
  return shown;
}

// Nothing that was remembered holds by another clock, or after a pause.
void Moment::follow(std::int64_t newest) {
  if (newest < fNewest || newest > fNewest + kJump) {
    fHistories.clear();
    fHeld = 0;
    fLastShown = nullptr;
  }
}

void Moment::remember(std::vector<OverlaySource> sources, std::int64_t newest) {
  std::map<std::string, SetHistory> known;
  known.swap(fHistories);
  for (OverlaySource& source : sources) {
    const std::string key = source.key;
    if (auto history = known.extract(key)) fHistories.insert(std::move(history));
    fHistories[key].add(std::make_shared<const OverlaySource>(std::move(source)), newest);
  }
}

// Returns whether the picture is held back more than before.
bool Moment::decideHold(const std::set<std::string>& hidden, std::int64_t newest) {
  std::int64_t wanted = 0;
  bool isFresh = false;
  for (const auto& [key, history] : fHistories) {
    if (!fIsOnFrame || !history.isTimed() || !history.isFresh() || hidden.count(key) > 0) continue;
    isFresh = true;
    wanted = std::max(wanted, std::min(history.lateness(), kMostHeld));
  }
  const std::int64_t passed = newest - std::exchange(fNewest, newest);
  const std::int64_t fallen = isFresh ? fHeld - passed / kFall : 0;
  const std::int64_t before = std::exchange(fHeld, std::max(wanted, fallen));
  return fHeld > before;
}

// As many frames behind as before, so that each frame has its turn, unless that is too few or too
// many; and never back to one before the last shown unless that has to be.
FramePtr Moment::choose(const std::vector<FramePtr>& frames, bool mayGoBack) {
  const Distances distances(frames);
  if (fHeld <= 0)
    fFramesBehind = 0;
  else if (!distances.isNear(fFramesBehind, fHeld))
    fFramesBehind = distances.nearest(fHeld);
  if (!mayGoBack) fFramesBehind = std::min(fFramesBehind, framesSince(frames, fLastShown));
  return distances.frame(fFramesBehind);
}

Moment::Source Moment::sourceAt(const std::string& key, const FramePtr& frame,
                                bool isHidden) const {
  const SetHistory& history = fHistories.at(key);
  Source source;
  source.isHidden = isHidden;
  source.isOnFrame = fIsOnFrame && history.isTimed();
  source.set = source.isOnFrame && frame ? history.seenAt(frame->timestamp) : history.newestSet();
  if (!source.set) source.set = std::make_shared<const OverlaySource>(OverlaySource{key, 0, {}});
  if (history.isTimed() && frame && source.set->seen > 0)
    source.age = std::max<std::int64_t>(frame->timestamp - source.set->seen, 0);
  source.isOld = history.isOld(source.age);
  return source;
}
