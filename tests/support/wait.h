// SPDX-License-Identifier: Apache-2.0
// Waits for events, never for time: returns as soon as the condition holds.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <thread>

// How often a condition is looked at: often enough that nobody waits for it, and a core stays free.
inline constexpr std::chrono::milliseconds kWaitStep{1};

// True as soon as `condition` holds; false when it does not within the limit, which is only there
// so that a broken program fails instead of hanging. Runs Qt's event loop meanwhile when called on
// the application's thread.
template <class Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  const auto isLate = [&] { return std::chrono::steady_clock::now() > end; };
  bool holds = condition();
  const auto* application = QCoreApplication::instance();
  if (application != nullptr && application->thread() == QThread::currentThread()) {
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
      holds = condition();
      if (holds || isLate()) loop.quit();
    });
    timer.start(kWaitStep);
    // What an event that the test itself sent has left to be deleted, no loop that begins later
    // deletes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!holds) loop.exec();
    return holds;
  }
  while (!holds && !isLate()) {
    std::this_thread::sleep_for(kWaitStep);
    holds = condition();
  }
  return holds;
}
