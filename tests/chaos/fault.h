// SPDX-License-Identifier: Apache-2.0
// What can go wrong between a viewer and a robot.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "dice.h"
#include "stage.h"

struct Fault {
  const char* name;
  // It is over as soon as it has happened.
  bool isMomentary;
  // The robot that comes afterwards is another one, which knows nothing.
  bool endsRobot;
  // Begins a fault of this duration; returns its particulars.
  std::string (*begin)(Stage& stage, Dice& dice, std::chrono::milliseconds duration);
  // Nothing of it is left when it returns.
  void (*end)(Stage& stage);
};

const std::vector<Fault>& allFaults();
// Null when there is none of this name.
const Fault* findFault(const std::string& name);
