// SPDX-License-Identifier: Apache-2.0
// The film that the robot records meanwhile.
#pragma once

#include <string>

#include "desktop.h"
#include "stage.h"
#include "worker.h"

// GUI thread; the event loop runs while it waits.
class Film {
 public:
  // `stage` is used on the worker's thread.
  Film(Worker& worker, Stage& stage, Desktop& desktop)
      : fWorker(worker), fStage(stage), fDesktop(desktop) {}

  // The viewer begins one, or another program ends it, unless it is so already. Throw KyError.
  void start();
  void stop();
  // The robot that recorded it is gone.
  void lose() { fRunning = false; }
  bool isRunning() const { return fRunning; }
  // Whether it is still that film, and has grown since the last question; what is wrong otherwise.
  // Empty when none is to run.
  std::string wrong();

 private:
  Ky::KyValue ask(const std::string& method);

  Worker& fWorker;
  Stage& fStage;
  Desktop& fDesktop;
  bool fRunning = false;
  std::string fPath;
  int fFrames = 0;
};
