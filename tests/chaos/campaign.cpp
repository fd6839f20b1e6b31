// SPDX-License-Identifier: Apache-2.0
#include "campaign.h"

#include <unistd.h>

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// What is promised.
constexpr milliseconds kPicture = 4s;   // after a fault's end
constexpr milliseconds kSettings = 8s;  // after that; the slowest detection looks once a second
constexpr milliseconds kStall = 1s;
#ifdef PERISCOPE_SANITIZED
// The sanitizer keeps what is freed.
constexpr Footprint kWindowGrowth{1 << 20, 8, 4};
constexpr Footprint kRobotGrowth{1 << 20, 8, 4};
#else
// Measured after 75 faults, with encoders and decoders for narrow links: 44 and 56 MiB more. 40
// faults of such links alone take 9 to 16 MiB more in the window, and do not take more towards the
// end.
constexpr Footprint kWindowGrowth{64 << 10, 8, 4};
constexpr Footprint kRobotGrowth{80 << 10, 8, 4};  // a film takes a third of it
#endif

// So much longer than promised is waited, to see whether it comes at all.
constexpr int kGrace = 5;
constexpr milliseconds kFilmGrows = 5s;
constexpr milliseconds kShortest{100};
constexpr milliseconds kLongestCalm{1500};
constexpr int kFilmRounds = 5;  // with a film and without, in turns
constexpr int kWarmUp = 5;      // rounds

milliseconds since(std::chrono::steady_clock::time_point begin) {
  return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
}

void runEventLoopFor(milliseconds time) {
  if (time > 0ms) waitUntil([] { return false; }, time);
}

std::string seconds(milliseconds time) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << static_cast<double>(time.count()) / 1000 << " s";
  return text.str();
}

}  // namespace

Campaign::Campaign(const Options& options, std::ostream& out)
    : fOptions(options),
      fOut(out),
      fDice(options.seed),
      fStage(fWorker.wait([] { return std::make_unique<Stage>(); })),
      fDesktop(fStage->address()),
      fFilm(fWorker, *fStage, fDesktop) {
  chooseSettings();
}

void Campaign::chooseSettings() {
  fDesktop.chooseSettings();
  std::string wrong;
  if (!waitUntil([&] { return (wrong = fDesktop.wrongSettings()).empty(); }))
    throw std::runtime_error("the settings can't be chosen, without any fault: " + wrong);
}

Campaign::~Campaign() {
  fWorker.wait([this] { fStage.reset(); });
}

Results Campaign::run() {
  const auto begin = Clock::now();
  fHeartbeat.takeLongest();
  for (int number = 1; number <= fOptions.faults; ++number) {
    Round round = draw(number);
    if (fOptions.most.count() > 0 && since(begin) > fOptions.most) break;
    if (!play(round)) connectAgain();
    runEventLoopFor(round.calm);
  }
  checkGrowth(fWindow, kWindowGrowth);
  checkGrowth(fRobot, kRobotGrowth);
  if (!fDesktop.dialogs().isEmpty())
    fOut << "dialogs that came up: " << fDesktop.dialogs().join(", ").toStdString() << '\n';
  return fResults;
}

// So that the next faults can be seen, too.
void Campaign::connectAgain() {
  fDesktop.connectAgain();
  chooseSettings();
  fHeartbeat.takeLongest();
}

Campaign::Round Campaign::draw(int number) {
  Round round;
  round.number = number;
  if (fOptions.only.empty())
    round.fault = &fDice.oneOf(allFaults());
  else
    round.fault = fDice.oneOf(fOptions.only);
  const auto longest = static_cast<int>(fOptions.longest.count());
  round.duration = fDice.time(static_cast<int>(kShortest.count()), longest);
  round.calm = fDice.time(0, static_cast<int>(kLongestCalm.count()));
  round.action = fDice.number(0, 3);
  round.seed = static_cast<std::uint32_t>(fDice.number(0, 1'000'000));
  if (round.fault->isMomentary) round.duration = 0ms;
  return round;
}

bool Campaign::play(Round& round) {
  wantFilm(round);
  endure(round);
  if (round.fault->endsRobot) robotStarted();

  RoundResult result{round.fault->name, 0ms, 0ms, 0ms};
  const bool goesOn = waitForPicture(round, result);
  if (goesOn) {
    checkSettings(round, result);
    checkFilm(round);
  }
  result.stall = fHeartbeat.takeLongest();
  if (result.stall > kStall * fOptions.patience)
    broken(round, "the window stood still for " + seconds(result.stall));
  fResults.rounds.push_back(result);
  measureGrowth();
  if (fOptions.verbose)
    fOut << describe(round) << ": picture after " << seconds(result.recovery) << ", settings "
         << seconds(result.settled) << ", stall " << seconds(result.stall) << ", "
         << fWindow.after.kilobytes / 1024 << " MiB" << std::endl;
  return goesOn;
}

// The fault ends in time, even if the window stands still. The user does not sit still meanwhile.
void Campaign::endure(Round& round) {
  auto fault = fWorker.post([this, &round] {
    Dice particulars(round.seed);
    const auto begin = Clock::now();
    round.particulars = round.fault->begin(*fStage, particulars, round.duration);
    std::this_thread::sleep_until(begin + round.duration);
    round.fault->end(*fStage);
    round.end = Clock::now();
  });
  runEventLoopFor(round.duration / 2);
  actAsUser(round);
  Worker::waitFor(std::move(fault));
}

void Campaign::actAsUser(const Round& round) {
  if (round.action == 1) fDesktop.moveSlider();
  if (round.action == 2) fDesktop.takePhoto();
}

// Two, since the first may have been on its way already.
bool Campaign::waitForPicture(const Round& round, RoundResult& result) {
  const auto limit = std::chrono::duration_cast<Milliseconds>(kPicture * fOptions.patience);
  const auto before = fDesktop.framesPainted();
  const bool came =
      waitUntil([&] { return fDesktop.framesPainted() >= before + 2; }, limit * kGrace);
  result.recovery = since(round.end);
  if (!came)
    broken(round, "no picture came any more");
  else if (result.recovery > limit)
    broken(round, "a picture came only after " + seconds(result.recovery));
  return came;
}

void Campaign::checkSettings(const Round& round, RoundResult& result) {
  const auto limit = std::chrono::duration_cast<Milliseconds>(kSettings * fOptions.patience);
  const auto begin = Clock::now();
  std::string wrong = fDesktop.wrongSettings();
  while (!wrong.empty() && since(begin) < limit) {
    runEventLoopFor(50ms);
    wrong = fDesktop.wrongSettings();
  }
  result.settled = since(begin);
  if (!wrong.empty()) broken(round, "the settings are not as before: " + wrong);
}

void Campaign::checkFilm(const Round& round) {
  const auto begin = Clock::now();
  std::string wrong = fFilm.wrong();
  while (!wrong.empty() && since(begin) < kFilmGrows * fOptions.patience) {
    runEventLoopFor(50ms);
    wrong = fFilm.wrong();
  }
  if (wrong.empty()) return;
  fFilm.lose();
  broken(round, wrong);
}

void Campaign::wantFilm(const Round& round) {
  const bool wanted = fOptions.film || (round.number / kFilmRounds) % 2 == 1;
  try {
    if (wanted)
      fFilm.start();
    else
      fFilm.stop();
  } catch (const Ky::KyError& error) {
    broken(round, std::string("before the fault, the recorder fails: ") + error.what());
  }
}

void Campaign::broken(const Round& round, const std::string& promise) {
  ++fResults.broken;
  fOut << "BROKEN: seed " << fOptions.seed << ", round " << describe(round) << ": " << promise
       << std::endl;
}

std::string Campaign::describe(const Round& round) const {
  constexpr const char* kActions[] = {"", ", the user moves a slider", ", the user takes a photo",
                                      ""};
  return std::to_string(round.number) + ", " + round.fault->name +
         (round.particulars.empty() ? "" : " (" + round.particulars + ")") + " for " +
         seconds(round.duration) + kActions[round.action] + (fFilm.isRunning() ? ", film" : "");
}

// ---- growth

void Campaign::measureGrowth() {
  const int rounds = static_cast<int>(fResults.rounds.size());
  if (const auto now = footprintOf(getpid())) {
    fWindow.after = *now;
    if (rounds <= kWarmUp) fWindow.before = *now;
  }
  if (const auto now = footprintOf(fStage->robot())) {
    fRobot.after = *now;
    if (++fRobotRounds <= kWarmUp) fRobot.before = *now;
  }
}

// What the one before has taken is known by now.
void Campaign::robotStarted() {
  if (fRobotRounds > 0) checkGrowth(fRobot, kRobotGrowth);
  fRobotRounds = 0;
  fFilm.lose();
}

void Campaign::checkGrowth(const Growth& growth, const Footprint& most) {
  fResults.growths.push_back(growth);
  const Footprint &before = growth.before, &after = growth.after;
  if (after.kilobytes - before.kilobytes <= most.kilobytes &&
      after.descriptors - before.descriptors <= most.descriptors &&
      after.threads - before.threads <= most.threads)
    return;
  ++fResults.broken;
  fOut << "BROKEN: seed " << fOptions.seed << ": the " << growth.program << " has grown"
       << std::endl;
}
