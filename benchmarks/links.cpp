// SPDX-License-Identifier: Apache-2.0
// How many of 30 pictures a second does the viewer show over links like those that robots have, how
// old are they, how long does a call take meanwhile, and what does it cost? A real robot, and the
// real module, thread and view, with a link of that delay each way and that rate between them.
//
// With --keys everything is encrypted.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cpu_time.h"
#include "known_keys.h"
#include "playing_viewer.h"
#include "support/link.h"
#include "targets.h"

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kWarmUp{4000};
constexpr std::chrono::milliseconds kMeasured{6000};

struct Line {
  const char* name;
  LinkSettings settings;
  int resolution;
  double fps;  // at least
};

LinkSettings link(std::chrono::milliseconds delay, double mbits) {
  LinkSettings settings;
  settings.delay = delay;
  settings.bitsPerSecond = static_cast<std::uint64_t>(mbits * 1e6);
  return settings;
}

LinkSettings stalling(LinkSettings settings) {
  settings.stallEvery = 1000ms;
  settings.stallFor = 300ms;
  return settings;
}

std::vector<Line> lines() {
  return {{"10 ms, 100 Mbit/s, 640x480", link(10ms, 100), 2, 29},
          {"10 ms, 50 Mbit/s, 640x480", link(10ms, 50), 2, 29},
          {"25 ms, 20 Mbit/s, 640x480", link(25ms, 20), 2, 29},
          {"25 ms, 2 Mbit/s, 640x480", link(25ms, 2), 2, 20},
          {"10 ms, 100 Mbit/s, 1280x960", link(10ms, 100), 3, 29},
          {"10 ms, 10 Mbit/s, 1280x960", link(10ms, 10), 3, 25},
          {"50 ms, 320x240", link(50ms, 0), 1, 29},
          {"100 ms, 320x240", link(100ms, 0), 1, 29},
          {"25 ms, 2 Mbit/s with stalls, 320x240", stalling(link(25ms, 2)), 1, 15}};
}

double percentile95(std::vector<double> values) {
  if (values.empty()) return 1e9;
  std::sort(values.begin(), values.end());
  return values[values.size() * 95 / 100];
}

// Calls the robot again and again, and notes how long each took, in milliseconds.
class Caller {
 public:
  explicit Caller(boost::shared_ptr<Ky::KyBroker> broker)
      : fBroker(std::move(broker)), fThread([this] { run(); }) {}
  std::vector<double> finish() {
    fStop = true;
    fThread.join();
    return std::move(fTimes);
  }

 private:
  void run() {
    while (!fStop) {
      const auto start = std::chrono::steady_clock::now();
      try {
        fBroker->call("KyLogger", "ping", {});
      } catch (const Ky::KyError&) {
      }
      const auto took = std::chrono::steady_clock::now() - start;
      fTimes.push_back(std::chrono::duration<double, std::milli>(took).count());
      std::this_thread::sleep_for(50ms);
    }
  }

  const boost::shared_ptr<Ky::KyBroker> fBroker;
  std::atomic<bool> fStop{false};
  std::vector<double> fTimes;
  std::thread fThread;
};

std::string carriedBy(const Ky::KyBroker& broker) {
  const auto streams = broker.statistics().streams;
  return streams.empty() ? "asked for one by one" : streams.front();
}

// The robot, with keys or without.
struct Side {
  explicit Side(bool hasKeys) {
    if (hasKeys) keys.emplace();
    robot.emplace(known());
  }
  const bench::KnownKeys* known() const { return keys ? &*keys : nullptr; }
  Ky::KyAddress over(const Link& link) const {
    return keys ? bench::KnownKeys::beyondLoopback(link.port())
                : Ky::KyAddress{"127.0.0.1", link.port()};
  }

  std::optional<bench::KnownKeys> keys;
  std::optional<bench::Robot> robot;
};

void play(benchmark::State& state, const Side& side, const Line& line) {
  for (auto _ : state) {
    std::optional<Link> between;
    const auto network = bench::threadsOf([&] { between.emplace(side.robot->address.port); });
    between->set(line.settings);
    bench::PlayingViewer viewer(side.over(*between), line.resolution, side.known());
    bench::runEventLoopFor(kWarmUp);
    viewer.view().takeAges();
    const auto before = viewer.view().framesPainted();
    Caller caller(viewer.broker());
    const bench::CpuTime cpu(side.robot->process.pid(), network);
    bench::runEventLoopFor(kMeasured);
    const double onRobot = cpu.robot(), onDesktop = cpu.desktop();
    const auto painted = static_cast<double>(viewer.view().framesPainted() - before);
    const double fps = painted / std::chrono::duration<double>(kMeasured).count();
    const double age = percentile95(viewer.view().takeAges());
    const double call = percentile95(caller.finish());
    const double way = std::chrono::duration<double, std::milli>(line.settings.delay).count();
    state.counters["shown_fps"] = fps;
    state.counters["robot_cpu"] = onRobot;
    state.counters["viewer_cpu"] = onDesktop;
    const std::string on = std::string(" over ") + line.name + (side.keys ? " with keys" : "");
    std::printf("pictures%s: %s; robot %.0f%%, viewer %.0f%% of a core\n", on.c_str(),
                carriedBy(*viewer.broker()).c_str(), onRobot, onDesktop);
    bench::atLeast("frames a second shown of 30" + on, fps, line.fps);
    if (line.settings.stallFor > 0ms) continue;
    bench::atMost("ms from capture to paint, 95th percentile," + on, age, way + 1000.0 / 30 + 80);
    bench::atMost("ms a call takes meanwhile, 95th percentile," + on, call, 2 * way + 100);
  }
}

// Takes "--keys" out of the command line.
bool takeKeys(int& argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--keys") != 0) continue;
    std::copy(argv + i + 1, argv + argc, argv + i);
    --argc;
    return true;
  }
  return false;
}

int run(int argc, char** argv) {
  const Side side(takeKeys(argc, argv));
  for (const Line& line : lines())
    bench::once(std::string("links/") + line.name,
                [&, line](benchmark::State& state) { play(state, side, line); });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
