// SPDX-License-Identifier: Apache-2.0
#include "worker.h"

#include <utility>

Worker::Worker() : fThread([this] { run(); }) {
}

Worker::~Worker() {
  add([this] { fStop = true; });
  fThread.join();
}

void Worker::add(std::function<void()> task) {
  const zu::MutexLock guard(fMutex);
  fTasks.push_back(std::move(task));
  fChanged.notifyAll();
}

void Worker::run() {
  while (!fStop) next()();
}

std::function<void()> Worker::next() {
  const zu::MutexLock guard(fMutex);
  while (fTasks.empty()) fChanged.wait(fMutex);
  auto task = std::move(fTasks.front());
  fTasks.erase(fTasks.begin());
  return task;
}
