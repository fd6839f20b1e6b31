// SPDX-License-Identifier: Apache-2.0
// Hands the robot's pictures to whoever looks at them as they came.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "viewer/core/frame.h"
#include "zu/mutex.h"

// Keeps the newest picture, and those of the last second while somebody watches: at most kMost, and
// at most kMostBytes of pixels. Thread-safe.
class FrameFeed {
 public:
  static constexpr std::size_t kMost = 32;
  static constexpr std::size_t kMostBytes = 48U << 20U;

  // Ends the watch when it goes; the feed may go before it.
  class Watch {
   public:
    Watch(std::function<void()> end) : fEnd(std::move(end)) {}
    ~Watch() { fEnd(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

   private:
    std::function<void()> fEnd;
  };

  FrameFeed();
  ~FrameFeed();
  FrameFeed(const FrameFeed&) = delete;
  FrameFeed& operator=(const FrameFeed&) = delete;

  // Calls `onFrame` for each picture, on the thread that publishes it, until the watch goes. It
  // must be quick, and leave the feed alone.
  [[nodiscard]] std::unique_ptr<Watch> watch(std::function<void()> onFrame);

  // Numbers the picture and says when it came.
  void publish(Frame frame);

  // Null before the first.
  FramePtr newest() const;
  // Those at hand, the oldest first.
  std::vector<FramePtr> recent() const;

 private:
  struct State;
  std::shared_ptr<State> fState;
};
