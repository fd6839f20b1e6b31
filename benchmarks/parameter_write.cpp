// SPDX-License-Identifier: Apache-2.0
// How long does a step of a slider hold the window up, until the robot has the new value, while 30
// pictures a second flow over the same connection? Against a ping of the same module: what a call
// costs that does nothing.
#include <benchmark/benchmark.h>

#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

#include "playing_viewer.h"
#include "targets.h"
#include "viewer/settings/custom_slider.h"

namespace {

constexpr std::chrono::milliseconds kWarmUp{1000};
constexpr std::chrono::milliseconds kPause{7};  // not in step with the pictures
constexpr int kRounds = 400;

template <class Action>
double millisecondsOf(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  return taken.count();
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void drag(benchmark::State& state, const Ky::KyAddress& robot, int resolution) {
  const std::string name = " at " + Model::resolutionToString(resolution);
  for (auto _ : state) {
    bench::PlayingViewer viewer(robot, resolution);
    QWidget panel;
    QVBoxLayout layout(&panel);
    QCustomSlider slider(&panel, viewer.module(), "Brightness", 0, true, 0, 255, true);
    layout.addLayout(slider.init());
    panel.show();
    bench::runEventLoopFor(kWarmUp);
    viewer.view().takeAges();
    std::vector<double> writes;
    std::vector<double> pings;
    for (int round = 0; round < kRounds; ++round) {
      bench::runEventLoopFor(kPause);
      writes.push_back(millisecondsOf([&] { slider.slider()->setValue(100 + round % 50); }));
      bench::runEventLoopFor(kPause);
      pings.push_back(millisecondsOf([&] { viewer.broker()->call("KyVideoDevice", "ping", {}); }));
    }
    const double write = medianOf(writes);
    state.counters["write_ms"] = write;
    state.counters["ping_ms"] = medianOf(pings);
    state.counters["pictures"] = static_cast<double>(viewer.view().takeAges().size());
    bench::atMost("ms for a step of a slider, median" + name, write, 2);
    bench::atMost("step of a slider / ping, medians" + name, write / medianOf(pings), 2);
  }
}

int run(int argc, char** argv) {
  const bench::Robot robot;
  for (const int resolution : {2, 3}) {
    bench::once(
        "drag/" + Model::resolutionToString(resolution),
        [&, resolution](benchmark::State& state) { drag(state, robot.address, resolution); });
  }
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
