// SPDX-License-Identifier: Apache-2.0
// Fault after fault, and what is promised of each.
#pragma once

#include <optional>
#include <ostream>

#include "desktop.h"
#include "dice.h"
#include "fault.h"
#include "film.h"
#include "heartbeat.h"
#include "options.h"
#include "results.h"
#include "stage.h"
#include "worker.h"

// After every fault: a picture again in time, the settings as before, the film still running where
// the robot lived, and no stall of the window. At the end: no growth. GUI thread.
class Campaign {
 public:
  // Starts robot and window. Throws when they don't work without any fault.
  Campaign(const Options& options, std::ostream& out);
  ~Campaign();

  // Until all faults were there or the time is up. A line is printed for every broken promise, and
  // with `verbose` for every fault. Throws when nothing works any more.
  Results run();

 private:
  using Clock = std::chrono::steady_clock;
  using Milliseconds = std::chrono::milliseconds;

  // Drawn before anything happens, so that chance does not depend on time.
  struct Round {
    int number = 0;
    const Fault* fault = nullptr;
    Milliseconds duration{0};
    Milliseconds calm{0};
    int action = 0;          // of the user meanwhile
    std::uint32_t seed = 0;  // of the particulars
    std::string particulars;
    Clock::time_point end;
  };

  Round draw(int number);
  bool play(Round& round);  // false: there is no picture any more
  void connectAgain();
  void chooseSettings();
  void endure(Round& round);
  void actAsUser(const Round& round);
  bool waitForPicture(const Round& round, RoundResult& result);
  void checkSettings(const Round& round, RoundResult& result);
  void checkFilm(const Round& round);
  void wantFilm(const Round& round);
  void measureGrowth();
  void robotStarted();
  void checkGrowth(const Growth& growth, const Footprint& most);
  std::string describe(const Round& round) const;
  void broken(const Round& round, const std::string& promise);

  const Options fOptions;
  std::ostream& fOut;
  Dice fDice;
  Worker fWorker;                 // faults come and go whatever the window does
  std::unique_ptr<Stage> fStage;  // the worker's
  Desktop fDesktop;
  Film fFilm;
  Heartbeat fHeartbeat;
  Results fResults;
  Growth fWindow{"window", {}, {}};
  Growth fRobot{"robot", {}, {}};
  int fRobotRounds = 0;  // of this robot
};
