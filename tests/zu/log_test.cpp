// SPDX-License-Identifier: Apache-2.0
#include "zu/log.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/log_capture.h"
#include "zu/src/console.h"

namespace {

// Another console level for one test.
class ConsoleLevel {
 public:
  explicit ConsoleLevel(zu::log::Level level) { zu::log::setConsoleLevel(level); }
  ~ConsoleLevel() { zu::log::setConsoleLevel(zu::log::Level::info); }
  ConsoleLevel(const ConsoleLevel&) = delete;
  ConsoleLevel& operator=(const ConsoleLevel&) = delete;
};

TEST(Log, ARecordHoldsLevelCategoryFunctionAndText) {
  const LogCapture capture;
  zu::log::write(zu::log::Level::warning, "periscope", "getNext", "no image");
  ASSERT_EQ(capture.records().size(), 1u);
  const zu::log::Record record = capture.records()[0];
  EXPECT_EQ(record.level, zu::log::Level::warning);
  EXPECT_EQ(record.category, "periscope");
  EXPECT_EQ(record.function, "getNext");
  EXPECT_EQ(record.text, "no image");
}

TEST(Log, ARecordHoldsTheTimeAtWhichItWasWritten) {
  const LogCapture capture;
  const auto before = std::chrono::system_clock::now();
  zu::log::info("test", "here") << "now";
  const auto after = std::chrono::system_clock::now();
  ASSERT_EQ(capture.records().size(), 1u);
  EXPECT_GE(capture.records()[0].time, before);
  EXPECT_LE(capture.records()[0].time, after);
}

TEST(Log, AStreamIsOneLineHoweverManyPiecesItHas) {
  const LogCapture capture;
  zu::log::error("test", "here") << "Frame " << 7 << " of " << 1.5 << ", " << true;
  ASSERT_EQ(capture.lines("test"), std::vector<std::string>{"error here: Frame 7 of 1.5, 1"});
}

TEST(Log, AStreamIsWrittenAtTheEndOfItsScopeAndNotBefore) {
  const LogCapture capture;
  {
    zu::log::Stream stream = zu::log::info("test", "here");
    stream << "half";
    EXPECT_TRUE(capture.records().empty());
  }
  EXPECT_EQ(capture.records().size(), 1u);
}

TEST(Log, AnEmptyStreamIsAnEmptyLine) {
  const LogCapture capture;
  { const zu::log::Stream stream = zu::log::info("test", "here"); }
  ASSERT_EQ(capture.records().size(), 1u);
  EXPECT_EQ(capture.records()[0].text, "");
}

TEST(Log, EachShorthandHasItsLevel) {
  const LogCapture capture;
  zu::log::error("test", "f") << "a";
  zu::log::warning("test", "f") << "b";
  zu::log::info("test", "f") << "c";
  zu::log::debug("test", "f") << "d";
  const std::vector<std::string> expected = {"error f: a", "warning f: b", "info f: c",
                                             "debug f: d"};
  EXPECT_EQ(capture.lines("test"), expected);
}

TEST(Log, TheNumbersOfTheLevelsAreThoseOfTheRobotsLog) {
  using zu::log::Level;
  const std::vector<std::pair<Level, std::string>> levels = {
      {Level::silent, "silent"},   {Level::fatal, "fatal"}, {Level::error, "error"},
      {Level::warning, "warning"}, {Level::info, "info"},   {Level::verbose, "verbose"},
      {Level::debug, "debug"}};
  for (std::size_t i = 0; i < levels.size(); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(levels[i].first), i);
    EXPECT_EQ(zu::log::name(levels[i].first), levels[i].second);
  }
  EXPECT_STREQ(zu::log::name(static_cast<Level>(99)), "unknown");
}

TEST(Log, EverySinkHearsEveryRecord) {
  const LogCapture first;
  const LogCapture second;
  zu::log::info("test", "here") << "both";
  EXPECT_EQ(first.lines("test"), second.lines("test"));
  EXPECT_EQ(first.records().size(), 1u);
}

TEST(Log, ASinkThatIsGoneHearsNothing) {
  int heard = 0;
  {
    const zu::log::Listener listener([&heard](const zu::log::Record&) { ++heard; });
    zu::log::info("test", "here") << "heard";
  }
  zu::log::info("test", "here") << "not heard";
  EXPECT_EQ(heard, 1);
}

TEST(Log, AListenerThatMovesKeepsListeningOnce) {
  int heard = 0;
  zu::log::Listener first([&heard](const zu::log::Record&) { ++heard; });
  zu::log::Listener second(std::move(first));
  zu::log::info("test", "here") << "one";
  EXPECT_EQ(heard, 1);
  {
    zu::log::Listener third;
    third = std::move(second);
    zu::log::info("test", "here") << "two";
    EXPECT_EQ(heard, 2);
  }
  zu::log::info("test", "here") << "three";
  EXPECT_EQ(heard, 2);
}

TEST(Log, SinksHearWhatTheConsoleDoesNotShow) {
  const ConsoleLevel level(zu::log::Level::error);
  const LogCapture capture;
  testing::internal::CaptureStderr();
  zu::log::debug("test", "here") << "quiet";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(capture.records().size(), 1u);
}

TEST(Log, TheConsoleShowsNothingLessSevereThanItsLevel) {
  testing::internal::CaptureStderr();
  const ConsoleLevel level(zu::log::Level::warning);
  zu::log::error("test", "here") << "an error";
  zu::log::warning("test", "here") << "a warning";
  zu::log::info("test", "here") << "an info";
  zu::log::setConsoleLevel(zu::log::Level::silent);
  zu::log::write(zu::log::Level::fatal, "test", "here", "the end");
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_NE(console.find("an error"), std::string::npos) << console;
  EXPECT_NE(console.find("a warning"), std::string::npos) << console;
  EXPECT_EQ(console.find("an info"), std::string::npos) << console;
  EXPECT_EQ(console.find("the end"), std::string::npos) << console;
}

TEST(Log, TheConsoleShowsInfoUnlessToldOtherwise) {
  testing::internal::CaptureStderr();
  zu::log::info("test", "here") << "an info";
  zu::log::debug("test", "here") << "a detail";
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_NE(console.find("an info"), std::string::npos) << console;
  EXPECT_EQ(console.find("a detail"), std::string::npos) << console;
}

TEST(Log, AConsoleLineHasTimeLevelCategoryFunctionAndText) {
  testing::internal::CaptureStderr();
  zu::log::error("periscope", "getNext") << "no %s image";
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(
      std::regex_match(console, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} error   )"
                                           R"(periscope\.getNext: no %s image\n)")))
      << console;
}

// What standard error has of the lines written meanwhile, without their times.
class ConsoleCapture {
 public:
  ConsoleCapture() { testing::internal::CaptureStderr(); }

  std::vector<std::string> lines() {
    std::istringstream text(testing::internal::GetCapturedStderr());
    std::vector<std::string> result;
    constexpr std::size_t kTimeWidth = 24;
    for (std::string line; std::getline(text, line);) result.push_back(line.substr(kTimeWidth));
    return result;
  }
};

TEST(Log, TheConsoleCountsLinesThatRepeatTheOneBefore) {
  const LogCapture sink;
  ConsoleCapture console;
  for (int i = 0; i < 4; ++i) zu::log::error("test", "here") << "lost";
  zu::log::error("test", "there") << "lost";
  zu::log::warning("test", "there") << "lost";
  zu::log::warning("test", "there") << "lost";
  zu::log::warning("other", "there") << "lost";
  zu::log::warning("other", "there") << "found";
  const std::vector<std::string> expected = {
      "error   test.here: lost",
      "error   test.here: (the line before came 3 times more)",
      "error   test.there: lost",
      "warning test.there: lost",
      "warning test.there: (the line before came once more)",
      "warning other.there: lost",
      "warning other.there: found"};
  EXPECT_EQ(console.lines(), expected);
  EXPECT_EQ(sink.records().size(), 9u) << "sinks hear each";
}

TEST(Log, TheConsoleCountsAPairOfLinesThatGoesOn) {
  ConsoleCapture console;
  for (int i = 0; i < 9; ++i) {
    zu::log::error("test", "here") << "gone";
    zu::log::error("test", "here") << "none";
  }
  zu::log::error("test", "here") << "gone";
  for (const char* text : {"end", "none", "gone", "end", "gone"})
    zu::log::info("test", "here") << text;
  const std::vector<std::string> expected = {
      "error   test.here: gone",
      "error   test.here: none",
      "error   test.here: gone",
      "error   test.here: none",
      "error   test.here: (the two lines before came 8 times more)",
      "info    test.here: end",
      "info    test.here: none",
      "info    test.here: gone",
      "info    test.here: end",
      "info    test.here: gone"};
  EXPECT_EQ(console.lines(), expected);
}

TEST(Log, TheConsoleCountsOnPastLinesThatItDoesNotShow) {
  ConsoleCapture console;
  for (int i = 0; i < 3; ++i) {
    zu::log::info("test", "here") << "shown";
    zu::log::debug("test", "here") << "hidden";
  }
  zu::log::info("test", "here") << "end";
  const std::vector<std::string> expected = {
      "info    test.here: shown", "info    test.here: (the line before came 2 times more)",
      "info    test.here: end"};
  EXPECT_EQ(console.lines(), expected);
}

TEST(Log, TheConsoleTellsEveryTenSecondsThatALineGoesOn) {
  zu::log::Console log;
  zu::log::Record record;
  record.category = "test";
  record.function = "here";
  record.text = "lost";
  ConsoleCapture console;
  for (int second = 0; second <= 25; ++second)
    log.write(record, zu::log::Console::Time(std::chrono::seconds(1000 + second)));
  log.tellRepeats();
  log.tellRepeats();
  const std::vector<std::string> expected = {
      "info    test.here: lost", "info    test.here: (the line before came 10 times more)",
      "info    test.here: (the line before came 10 times more)",
      "info    test.here: (the line before came 5 times more)"};
  EXPECT_EQ(console.lines(), expected);
}

TEST(Log, TheConsoleTellsAtTheEndOfTheProgram) {
  EXPECT_EXIT(
      {
        for (int i = 0; i < 3; ++i) zu::log::error("test", "here") << "lost";
        std::exit(0);
      },
      testing::ExitedWithCode(0), "here: lost\n.*here: .the line before came 2 times more.\n");
}

TEST(Log, ARecordNamesTheInnermostSubjectOfItsThread) {
  const LogCapture capture;
  const auto write = [] { zu::log::info("test", "here") << "line"; };
  write();
  {
    const zu::log::Subject outer("one");
    write();
    {
      const zu::log::Subject inner("two");
      write();
      std::thread(write).join();
    }
    write();
  }
  write();
  std::vector<std::string> subjects;
  for (const auto& record : capture.records()) subjects.push_back(record.subject);
  EXPECT_EQ(subjects, (std::vector<std::string>{"", "one", "two", "", "one", ""}));
}

TEST(Log, LinesOfSeveralThreadsReachASinkOneAtATime) {
  constexpr int kThreads = 4;
  constexpr int kLines = 200;
  const ConsoleLevel level(zu::log::Level::silent);
  int heard = 0;  // not atomic on purpose: the log promises one record at a time
  {
    const zu::log::Listener listener([&heard](const zu::log::Record&) { ++heard; });
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([] {
        for (int line = 0; line < kLines; ++line) zu::log::info("test", "thread") << line;
      });
    for (std::thread& thread : threads) thread.join();
  }
  EXPECT_EQ(heard, kThreads * kLines);
}

TEST(Log, ASinkMayComeAndGoWhileOthersWrite) {
  const ConsoleLevel level(zu::log::Level::silent);
  std::atomic<bool> done = false;
  std::thread writer([&done] {
    while (!done) zu::log::info("test", "writer") << "line";
  });
  for (int i = 0; i < 200; ++i) {
    auto alive = std::make_unique<int>(0);
    {
      const zu::log::Listener listener([&alive](const zu::log::Record&) { ++*alive; });
    }
    alive.reset();  // a sink that still ran would touch it
  }
  done = true;
  writer.join();
}

}  // namespace
