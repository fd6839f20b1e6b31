// SPDX-License-Identifier: Apache-2.0
// What does it cost to show pictures? Processor time, user and system, of the whole viewer for each
// 1,000 pictures that it shows at 30 a second in a window on a real screen: receiving, converting,
// painting and handing the window's pixels to the display. A real robot in a process of its own.
//
// With --frames N it measures each row over N pictures instead of 300.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "playing_viewer.h"
#include "targets.h"
#include "viewer/stage/stage.h"

namespace {

constexpr int kFrames = 300;
constexpr std::chrono::milliseconds kWarmUp{2500};  // the first pictures allocate and connect

// What is shown, and at which size.
struct Row {
  std::string shown;
  int resolution;
  double limit;  // seconds for 1,000 pictures
  QSize stage;   // of the stage that shows it; empty: the small view does

  std::string name() const { return shown + ", " + Model::resolutionToString(resolution); }
};

const std::vector<Row> kRows = {{"small view", 2, 2.1, {}},
                                {"small view", 3, 3.9, {}},
                                {"stage at 1:1", 2, 1.6, {640, 480}},
                                {"stage at 1:1", 3, 4.0, {1280, 960}},
                                {"stage on all of 1920 x 1080", 3, 10, {1920, 1080}}};

// A stage of this size in place of the small view, with nothing but the picture in it.
std::unique_ptr<Stage> putOnStage(bench::PlayingViewer& viewer, LookoutWidget& player, QSize size) {
  viewer.view().hide();
  auto stage = std::make_unique<Stage>(player, viewer.module(), "robot", nullptr);
  stage->actions().toolBar->setChecked(false);
  stage->actions().line->setChecked(false);
  stage->resize(size);
  stage->show();
  return stage;
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processSeconds() {
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

void show(benchmark::State& state, const Ky::KyAddress& robot, const Row& row, int frames) {
  for (auto _ : state) {
    bench::PlayingViewer viewer(robot, row.resolution);
    LookoutWidget player;
    const std::unique_ptr<Stage> stage =
        row.stage.isEmpty() ? nullptr : putOnStage(viewer, player, row.stage);
    const auto painted = [&] {
      return stage ? stage->framesPainted() : viewer.view().framesPainted();
    };
    bench::runEventLoopFor(kWarmUp);
    const std::uint64_t framesBefore = painted();
    const double secondsBefore = processSeconds();
    bench::runEventLoopFor(std::chrono::milliseconds(frames * 1000 / bench::PlayingViewer::kFps));
    const double used = processSeconds() - secondsBefore;
    const auto shown = static_cast<double>(painted() - framesBefore);
    if (shown == 0) return state.SkipWithError("no picture was shown");
    state.counters["frames"] = shown;
    bench::atMost("s of processor time for 1,000 pictures in the " + row.name(),
                  used / shown * 1000, row.limit);
  }
}

// 0 for what is no number from 1 to 100000.
int frameCount(const std::string& word) {
  int count = 0;
  const char* end = word.data() + word.size();
  const auto read = std::from_chars(word.data(), end, count);
  return read.ec == std::errc() && read.ptr == end && count >= 1 && count <= 100000 ? count : 0;
}

// Takes "--frames N" out of the command line. Ends the program with 2 when N is none.
int takeFrames(int& argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--frames") != 0) continue;
    const std::string word = i + 1 < argc ? argv[i + 1] : "";
    const int frames = frameCount(word);
    if (frames == 0) {
      std::fprintf(stderr, "%s: --frames needs a number from 1 to 100000, not '%s'\n", argv[0],
                   word.c_str());
      std::exit(2);
    }
    std::copy(argv + i + 2, argv + argc, argv + i);
    argc -= 2;
    return frames;
  }
  return kFrames;
}

int run(int argc, char** argv) {
  const int frames = takeFrames(argc, argv);
  const bench::Robot robot;
  for (const Row& row : kRows)
    bench::once("show/" + row.name(), [&robot, row, frames](benchmark::State& state) {
      show(state, robot.address, row, frames);
    });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runOnScreen(argc, argv, run);
}
