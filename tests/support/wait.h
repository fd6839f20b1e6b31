// Waits for events, never for time: returns as soon as the condition holds.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>
#include <thread>

// True as soon as `condition` holds; false when it does not within the limit, which is only there
// so that a broken program fails instead of hanging. Delivers Qt's events meanwhile when called on
// the application's thread.
template <class Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    if (QCoreApplication::instance() != nullptr)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}
