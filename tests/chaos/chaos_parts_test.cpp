// SPDX-License-Identifier: Apache-2.0
// What the chaos program is made of.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <sstream>

#include "dice.h"
#include "fault.h"
#include "footprint.h"
#include "heartbeat.h"
#include "options.h"
#include "results.h"
#include "stage.h"
#include "support/wait.h"
#include "zu/unique_fd.h"

namespace {

using namespace std::chrono_literals;

TEST(Dice, FallTheSameOnEveryComputer) {
  Dice dice(5489);  // the standard says what its generator gives for this seed
  EXPECT_EQ(dice.number(0, 99), 81);
  EXPECT_EQ(dice.number(0, 99), 13);
  EXPECT_EQ(dice.number(0, 99), 90);
}

TEST(Dice, GiveEveryNumberOfTheRangeAndNoOther) {
  Dice dice(1);
  std::vector<int> count(4);
  for (int throws = 0; throws < 1000; ++throws)
    ++count.at(static_cast<std::size_t>(dice.number(-1, 2) + 1));
  for (const int number : count) EXPECT_GT(number, 150);
}

TEST(Dice, AreMostlySmallWhereToldSo) {
  Dice dice(1);
  int small = 0, largest = 0, smallest = 1000;
  for (int throws = 0; throws < 1000; ++throws) {
    const int number = dice.mostlySmall(100, 500);
    small += number < 200 ? 1 : 0;
    largest = std::max(largest, number);
    smallest = std::min(smallest, number);
  }
  EXPECT_GT(small, 400);
  EXPECT_LT(small, 600);
  EXPECT_GT(largest, 490);
  EXPECT_LE(largest, 500);
  EXPECT_EQ(smallest, 100);
}

TEST(Heartbeat, SeesThatTheEventLoopStandsStill) {
  Heartbeat heartbeat;
  auto longest = 0ms;
  for (int looks = 0; looks < 4000 && longest < 200ms; ++looks) {
    std::this_thread::sleep_for(5ms);  // what it is to see
    longest = std::max(longest, heartbeat.takeLongest());
  }
  EXPECT_GE(longest, 200ms);
}

TEST(Footprint, CountsDescriptorsAndThreads) {
  const auto before = footprintOf(getpid());
  ASSERT_TRUE(before);
  EXPECT_GT(before->kilobytes, 0);
  const zu::os::UniqueFd file(open("/dev/null", O_RDONLY | O_CLOEXEC));
  std::promise<void> end;
  std::thread thread([&] { end.get_future().wait(); });
  const auto after = footprintOf(getpid());
  end.set_value();
  thread.join();
  ASSERT_TRUE(after);
  EXPECT_EQ(after->descriptors, before->descriptors + 1);
  EXPECT_EQ(after->threads, before->threads + 1);
}

TEST(Footprint, IsNothingOfAProcessThatIsGone) {
  EXPECT_FALSE(footprintOf(0));
}

Results someResults() {
  Results results;
  for (const int recovery : {300, 100, 4200})
    results.rounds.push_back({"cut", std::chrono::milliseconds(recovery), 20ms,
                              std::chrono::milliseconds(recovery / 10)});
  results.rounds.push_back({"kill", 2000ms, 40ms, 30ms});
  results.growths.push_back({"robot", {51200, 28, 11}, {52224, 29, 12}});
  results.growths.push_back({"robot", {51200, 12, 9}, {61440, 12, 7}});
  results.broken = 1;
  return results;
}

std::string table(const Results& results) {
  std::ostringstream out;
  printTable(out, results);
  return out.str();
}

TEST(Results, AreATableOfMediansAndWorstCases) {
  EXPECT_EQ(table(someResults()),
            "             picture again after (s)       settings   stall\n"
            "fault       count   median     95 %    worst     worst    worst\n"
            "cut              3     0.30     4.20     4.20      0.02     0.42\n"
            "kill             1     2.00     2.00     2.00      0.04     0.03\n"
            "all              4     0.30     4.20     4.20      0.04     0.42\n"
            "\n"
            "robot    memory (MiB) 50 -> 60  descriptors 28 -> 29  threads 11 -> 12  (worst of 2)\n"
            "broken promises: 1\n");
}

TEST(Results, OfSeveralRunsCanBeJoined) {
  Results joined;
  for (int run = 0; run < 2; ++run) {
    std::stringstream file;
    write(file, someResults());
    read(file, joined);
  }
  EXPECT_EQ(joined.rounds.size(), 8u);
  EXPECT_EQ(joined.broken, 2);
  std::istringstream nonsense("round cut soon\n");
  EXPECT_THROW(read(nonsense, joined), std::runtime_error);
}

std::string refusal(const QStringList& arguments) {
  try {
    parseOptions(QStringList("chaos") + arguments);
    return "none";
  } catch (const OptionsError& error) {
    return error.what();
  }
}

TEST(ChaosOptions, SayWhatIsWrong) {
  EXPECT_EQ(refusal({"--seed", "3", "--only", "cut", "--only", "mute"}), "none");
  EXPECT_EQ(refusal({"--faults", "0"}),
            "--faults: '0' is no whole number from 1 on\nTry '--help'.");
  EXPECT_TRUE(refusal({"--only", "rain"})
                  .starts_with("--only: there is no fault 'rain'; there are: "
                               "delay, "));
}

// A robot whose modules hang on command.
TEST(ChaosRobot, HasAModuleDawdleAndNoOther) {
  Stage stage;
  stage.call("KyMemory", "dawdle", {Ky::KyValue(10'000), Ky::KyValue(60'000)});
  stage.callLater("KyMemory", "ping");
  EXPECT_TRUE(stage.call("KyLogger", "ping").asBool());
  EXPECT_FALSE(stage.isAnswered());
}

TEST(ChaosRobot, HoldsAModule) {
  Stage stage;
  stage.callLater("KyMemory", "hold", {Ky::KyValue(10'000)});
  EXPECT_TRUE(stage.call("KyLogger", "ping").asBool());
  EXPECT_FALSE(stage.isAnswered());
}

TEST(ChaosRobot, IsReachedOverTheLinkAgainWhenAnotherOneWasStarted) {
  Stage stage;
  stage.signalRobot(SIGKILL);
  stage.startRobot();
  Ky::KyBrokerOptions options;
  options.name = "test";
  options.parent = stage.address();
  const auto broker = Ky::KyBroker::create(std::move(options));
  EXPECT_TRUE(broker->isModulePresent("KyVideoDevice"));
  broker->shutdown();
}

}  // namespace
