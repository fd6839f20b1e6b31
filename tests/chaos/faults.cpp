// SPDX-License-Identifier: Apache-2.0
#include <csignal>
#include <thread>

#include "fault.h"

namespace {

using std::chrono::milliseconds;

std::string text(milliseconds time) {
  return std::to_string(time.count()) + " ms";
}

Ky::KyValue value(milliseconds time) {
  return static_cast<int>(time.count());
}

void heal(Stage& stage) {
  stage.link().set({});
}

// ---- a slow link

std::string beginDelay(Stage& stage, Dice& dice, milliseconds) {
  const milliseconds delay = dice.time(20, 700);
  stage.link().set({.delay = delay});
  return text(delay) + " each way";
}

std::string beginThrottle(Stage& stage, Dice& dice, milliseconds) {
  const int kilobits = dice.mostlySmall(50, 10'000);
  stage.link().set({.bitsPerSecond = static_cast<std::uint64_t>(kilobits) * 1000});
  return std::to_string(kilobits) + " kbit/s";
}

std::string beginStalls(Stage& stage, Dice& dice, milliseconds) {
  const milliseconds every(dice.number(100, 1500));
  const milliseconds pause = every * dice.number(10, 95) / 100;
  stage.link().set({.stallEvery = every, .stallFor = pause});
  return text(pause) + " of every " + text(every);
}

// ---- a link that loses and changes bytes

enum class Ways { ToRobot, ToViewer, Both };
constexpr Ways kWays[] = {Ways::ToRobot, Ways::ToViewer, Ways::Both};

std::string setWays(Stage& stage, Ways ways, const LinkSettings& settings) {
  if (ways != Ways::ToViewer) stage.link().set(LinkWay::ToRobot, settings);
  if (ways != Ways::ToRobot) stage.link().set(LinkWay::ToViewer, settings);
  return ways == Ways::Both      ? "both ways"
         : ways == Ways::ToRobot ? "to the robot"
                                 : "to the viewer";
}

std::string beginSwallow(Stage& stage, Dice& dice, milliseconds) {
  return setWays(stage, dice.oneOf(kWays), {.damage = LinkDamage::Swallow});
}

template <LinkDamage Damage>
std::string beginDamage(Stage& stage, Dice& dice, milliseconds) {
  const Ways ways = dice.oneOf(kWays);
  // Pictures cross one way, and few words the other.
  const int every = dice.mostlySmall(10, ways == Ways::ToRobot ? 3000 : 1'000'000);
  const int length = dice.mostlySmall(1, 5000);
  const std::string which = setWays(stage, ways,
                                    {.damage = Damage,
                                     .damageEvery = static_cast<std::size_t>(every),
                                     .damageLength = static_cast<std::size_t>(length)});
  return which + ", every " + std::to_string(every) + " bytes" +
         (Damage == LinkDamage::Garble ? "" : ", " + std::to_string(length) + " bytes");
}

// ---- connections that end, or are not to be had

std::string halfClose(Stage& stage, Dice& dice, milliseconds) {
  const bool toRobot = dice.number(0, 1) == 0;
  stage.link().halfClose(toRobot ? LinkWay::ToRobot : LinkWay::ToViewer);
  return toRobot ? "to the robot" : "to the viewer";
}

std::string cut(Stage& stage, Dice&, milliseconds) {
  stage.link().cut();
  return {};
}

std::string reset(Stage& stage, Dice&, milliseconds) {
  stage.link().reset();
  return {};
}

template <LinkDoor Door>
std::string shutDoor(Stage& stage, Dice& dice, milliseconds) {
  const bool resets = dice.number(0, 1) == 0;
  stage.link().setDoor(Door);
  if (resets)
    stage.link().reset();
  else
    stage.link().cut();
  return resets ? "after a reset" : "after a cut";
}

void openDoor(Stage& stage) {
  stage.link().setDoor(LinkDoor::Open);
}

void nothingToEnd(Stage&) {
}

// ---- the robot

template <int Signal>
std::string signalRobot(Stage& stage, Dice&, milliseconds) {
  stage.signalRobot(Signal);
  return {};
}

void thaw(Stage& stage) {
  stage.signalRobot(SIGCONT);
}

void startRobot(Stage& stage) {
  stage.startRobot();
}

// Those that the viewer calls while it plays, shows settings and films.
const char* const kModules[] = {"KyVideoDevice",       "KyMemory",   "KyVideoRecorder",
                                "KyLandMarkDetection", "KyLauncher", "KyPhotoCapture"};

std::string hold(Stage& stage, Dice& dice, milliseconds duration) {
  const std::string module = dice.oneOf(kModules);
  stage.callLater(module, "hold", {value(duration)});
  return module;
}

std::string dawdle(Stage& stage, Dice& dice, milliseconds duration) {
  const std::string module = dice.oneOf(kModules);
  const milliseconds delay = dice.time(20, 1500);
  stage.callLater(module, "dawdle", {value(delay), value(duration)});
  return module + " by " + text(delay);
}

// A robot that is back, but not yet all there.
std::string startHeld(Stage& stage, Dice& dice, milliseconds duration) {
  stage.signalRobot(SIGKILL);
  stage.startRobot();
  return hold(stage, dice, duration);
}

// A robot that is lost again while the viewer takes it up.
std::string loseStarted(Stage& stage, Dice& dice, milliseconds) {
  stage.signalRobot(SIGKILL);
  stage.startRobot();
  const std::size_t before = stage.link().accepted();
  const milliseconds pause(dice.number(0, 150));
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (stage.link().accepted() < before + 2 && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(milliseconds(1));
  std::this_thread::sleep_for(pause);
  stage.link().set({.damage = LinkDamage::Swallow});
  return text(pause) + " after the connection";
}

void waitForAnswer(Stage& stage) {
  stage.waitForAnswer();
}

}  // namespace

const std::vector<Fault>& allFaults() {
  static const std::vector<Fault> faults = {
      {"delay", false, false, beginDelay, heal},
      {"throttle", false, false, beginThrottle, heal},
      {"stalls", false, false, beginStalls, heal},
      {"swallow", false, false, beginSwallow, heal},
      {"garble", false, false, beginDamage<LinkDamage::Garble>, heal},
      {"truncate", false, false, beginDamage<LinkDamage::CutOut>, heal},
      {"double", false, false, beginDamage<LinkDamage::Double>, heal},
      {"half-close", true, false, halfClose, nothingToEnd},
      {"cut", true, false, cut, nothingToEnd},
      {"reset", true, false, reset, nothingToEnd},
      {"refuse", false, false, shutDoor<LinkDoor::Closed>, openDoor},
      {"slam", false, false, shutDoor<LinkDoor::Slammed>, openDoor},
      {"freeze", false, false, signalRobot<SIGSTOP>, thaw},
      {"kill", false, true, signalRobot<SIGKILL>, startRobot},
      {"restart", false, true, signalRobot<SIGTERM>, startRobot},
      {"lost-start", false, true, loseStarted, heal},
      {"mute", false, false, hold, waitForAnswer},
      {"mute-start", false, true, startHeld, waitForAnswer},
      {"slow", false, false, dawdle, waitForAnswer},
  };
  return faults;
}

const Fault* findFault(const std::string& name) {
  for (const Fault& fault : allFaults())
    if (name == fault.name) return &fault;
  return nullptr;
}
