// SPDX-License-Identifier: Apache-2.0
#include "heartbeat.h"

#include <algorithm>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kBeat = 10ms;
constexpr auto kLook = 5ms;
constexpr Clock::duration kLongestLook = 20ms;

}  // namespace

Heartbeat::Heartbeat() {
  fTimer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&fTimer, &QTimer::timeout, [this] { ++fBeats; });
  fTimer.start(kBeat);
  fThread = std::thread([this] { watch(); });
}

Heartbeat::~Heartbeat() {
  fStop = true;
  fThread.join();
}

Heartbeat::Milliseconds Heartbeat::takeLongest() {
  return std::chrono::duration_cast<Milliseconds>(fLongest.exchange(Clock::duration::zero()));
}

void Heartbeat::watch() {
  auto last = Clock::now();
  unsigned beats = fBeats;
  Clock::duration silence{};
  while (!fStop) {
    std::this_thread::sleep_for(kLook);
    const auto now = Clock::now();
    const unsigned newest = fBeats;
    silence = newest == beats ? silence + std::min(now - last, kLongestLook) : 0ms;
    fLongest = std::max(fLongest.load(), silence);
    beats = newest;
    last = now;
  }
}
