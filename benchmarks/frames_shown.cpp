// SPDX-License-Identifier: Apache-2.0
// How many pictures a second does the viewer show when 30 are asked for, and how old is a picture
// when it is painted? And how many with all detections switched on? A real robot in a process of
// its own, the real module, thread and view.
//
// With --minutes N it shows 640 x 480 for that long instead and says how much the memory has grown.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "ky/video_device_proxy.h"
#include "playing_viewer.h"
#include "targets.h"

namespace {

constexpr std::chrono::milliseconds kWarmUp{2500};  // the shown rate is right only after 30 frames
constexpr std::chrono::milliseconds kMeasured{8000};

double percentile95(std::vector<double> values) {
  if (values.empty()) return 1e9;
  std::sort(values.begin(), values.end());
  return values[values.size() * 95 / 100];
}

struct Played {
  int resolution;
  bool changesPictures;  // with every parameter of the camera
  std::string name() const {
    return Model::resolutionToString(resolution) + (changesPictures ? ", all parameters set" : "");
  }
};

// As much work for the robot as parameters can make.
void changePictures(const Module& module) {
  using enum Ky::CameraParameter;
  for (const auto& [id, value] : std::map<int, int>{{kBrightness, 140},
                                                    {kContrast, 70},
                                                    {kSaturation, 200},
                                                    {kHue, 30},
                                                    {kHorizontalFlip, 1},
                                                    {kAutoExposition, 1},
                                                    {kAutoGain, 1},
                                                    {kAutoWhiteBalance, 1}})
    module.setCameraParam(id, value);
}

void play(benchmark::State& state, const Ky::KyAddress& robot, const Played& played) {
  const std::string name = played.name();
  for (auto _ : state) {
    bench::PlayingViewer viewer(robot, played.resolution);
    if (played.changesPictures) changePictures(*viewer.module());
    bench::runEventLoopFor(kWarmUp);
    viewer.view().takeAges();
    bench::runEventLoopFor(kMeasured);
    const double shown = viewer.view().shownFrameRate();
    const double age = percentile95(viewer.view().takeAges());
    state.counters["shown_fps"] = shown;
    state.counters["age_ms_p95"] = age;
    bench::atLeast("frames a second shown of 30 at " + name, shown, 29);
    bench::atMost("ms from capture to paint, 95th percentile, at " + name, age,
                  1000.0 / bench::PlayingViewer::kFps + 20);
  }
}

void playWithDetections(benchmark::State& state, const Ky::KyAddress& robot) {
  const std::vector<std::string> kinds = {"mark", "ball", "duck", "face", "logo", "picture"};
  for (auto _ : state) {
    bench::PlayingViewer viewer(robot, 1);
    for (const std::string& kind : kinds)
      if (!viewer.module()->activateDetection(kind, 1))
        state.SkipWithError("no detection of this kind");
    bench::runEventLoopFor(kWarmUp + kMeasured);
    const double shown = viewer.view().shownFrameRate();
    state.counters["shown_fps"] = shown;
    bench::atLeast("frames a second shown of 30 at 320x240 with all detections", shown, 29);
  }
}

// The first minute is for whatever is allocated once.
void watchMemory(const Ky::KyAddress& robot, int minutes) {
  bench::PlayingViewer viewer(robot, 2);
  bench::runEventLoopFor(std::chrono::minutes(1));
  const double atFirst = bench::residentMegabytes();
  for (int minute = 2; minute <= minutes; ++minute) {
    bench::runEventLoopFor(std::chrono::minutes(1));
    std::printf("minute %d: %.1f MB, %llu frames painted\n", minute, bench::residentMegabytes(),
                static_cast<unsigned long long>(viewer.view().framesPainted()));
    std::fflush(stdout);
  }
  bench::atMost("MB grown in " + std::to_string(minutes) + " minutes",
                bench::residentMegabytes() - atFirst, 2);
}

// Takes "--minutes N" out of the command line; 0 when it isn't there.
int takeMinutes(int& argc, char** argv) {
  for (int i = 1; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], "--minutes") != 0) continue;
    const int minutes = std::atoi(argv[i + 1]);
    std::copy(argv + i + 2, argv + argc, argv + i);
    argc -= 2;
    return minutes;
  }
  return 0;
}

int run(int argc, char** argv) {
  const int minutes = takeMinutes(argc, argv);
  const bench::Robot robot;
  if (minutes > 0) {
    watchMemory(robot.address, minutes);
    return 0;
  }
  // The robot keeps its parameters: the changed pictures come last.
  for (const Played& played : {Played{2, false}, Played{3, false}, Played{3, true}}) {
    bench::once("play/" + played.name(),
                [&, played](benchmark::State& state) { play(state, robot.address, played); });
  }
  bench::once("play/detections",
              [&](benchmark::State& state) { playWithDetections(state, robot.address); });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
