// SPDX-License-Identifier: Apache-2.0
// Whether the application's thread does its work, as seen by another thread.
#pragma once

#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

// Counts only time in which the watching thread itself could run: what stands still with the whole
// machine is nobody's fault. Made and destroyed on the GUI thread.
class Heartbeat {
 public:
  using Milliseconds = std::chrono::milliseconds;

  Heartbeat();
  ~Heartbeat();
  Heartbeat(const Heartbeat&) = delete;
  Heartbeat& operator=(const Heartbeat&) = delete;

  // The longest time without a beat since the last call. Thread-safe.
  Milliseconds takeLongest();

 private:
  void watch();

  QTimer fTimer;
  std::atomic<unsigned> fBeats = 0;
  std::atomic<std::chrono::steady_clock::duration> fLongest{};
  std::atomic<bool> fStop = false;
  std::thread fThread;  // last: uses all the others
};
