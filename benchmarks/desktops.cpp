// SPDX-License-Identifier: Apache-2.0
// How many of 30 pictures a second of 640 x 480 do many desktops of one robot get, how many
// encodings does that take, and what does it cost? They are programs in one process that do nothing
// with the pictures; where there is a network between, each has a link of its own.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cpu_time.h"
#include "ky/video_device_proxy.h"
#include "playing_viewer.h"
#include "support/link.h"
#include "targets.h"

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kWarmUp{5000};
constexpr std::chrono::milliseconds kMeasured{6000};
constexpr std::chrono::microseconds kTick{1000000 / 30};

struct Line {
  const char* name;
  int desktops;
  const char* pictures;  // the preference
  double mbits;          // of each link; 0: none
  double fps;            // at least
};

constexpr Line kLines[] = {{"20 desktops, saving", 20, "saving", 0, 29},
                           {"20 desktops, automatic, 4 Mbit/s each", 20, "automatic", 4, 29},
                           {"40 desktops, exact", 40, "exact", 0, 0}};

// Which picture, and which of the encodings of it: those of two encoders are hardly ever the same.
using Print = std::pair<std::int64_t, std::uint64_t>;

Print printOf(const Ky::KyValue& record) {
  const Ky::KyBinary& pixels = record[6].asBinary();
  std::uint64_t sum = 14695981039346656037U;
  for (std::size_t i = 0; i < pixels.size(); i += 61)
    sum = (sum ^ pixels.data()[i]) * 1099511628211U;
  return {record[4].asInt64() * 1000000 + record[5].asInt64(), sum};
}

// Asks for a picture at every tick.
class Desktop {
 public:
  Desktop(int port, const Line& line) {
    Ky::KyBrokerOptions options;
    options.name = "desktop";
    options.parent = Ky::KyAddress{"127.0.0.1", port};
    fBroker = Ky::KyBroker::create(options);
    fBroker->setPreference("KyVideoDevice.pictures", line.pictures);
    fDevice = std::make_unique<Ky::KyVideoDeviceProxy>(fBroker);
    fDevice->subscribe("desktop", 2, 9, 30);
    fThread = std::thread([this] { run(); });
  }
  ~Desktop() {
    stop();
    fDevice.reset();
    fBroker->shutdown();
  }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  void measure(bool isOn) { fMeasuring = isOn; }
  void stop() {
    fStop = true;
    if (fThread.joinable()) fThread.join();
  }
  // Those that came while it measured; after stop().
  const std::set<Print>& seen() const { return fSeen; }
  std::string carried() const {
    const auto streams = fBroker->statistics().streams;
    return streams.empty() ? "nothing" : streams.front();
  }

 private:
  void run() {
    std::int64_t last = 0;
    for (auto next = std::chrono::steady_clock::now(); !fStop; next += kTick) {
      std::this_thread::sleep_until(next);
      try {
        const Print print = printOf(fDevice->getImageRemote("desktop"));
        if (std::exchange(last, print.first) != print.first && fMeasuring) fSeen.insert(print);
      } catch (const Ky::KyError& error) {
        std::fprintf(stderr, "%s\n", error.toString().c_str());
      }
      // A tick that comes late is dropped.
      next = std::max(next, std::chrono::steady_clock::now() - kTick);
    }
  }

  boost::shared_ptr<Ky::KyBroker> fBroker;
  std::unique_ptr<Ky::KyVideoDeviceProxy> fDevice;
  std::atomic<bool> fMeasuring{false};
  std::atomic<bool> fStop{false};
  std::set<Print> fSeen;  // the thread's until it has ended
  std::thread fThread;
};

// One for each desktop where the line wants them.
class Network {
 public:
  Network(int robotPort, const Line& line) : fRobotPort(robotPort) {
    if (line.mbits == 0) return;
    LinkSettings settings;
    settings.delay = 5ms;
    settings.bitsPerSecond = static_cast<std::uint64_t>(line.mbits * 1e6);
    fThreads = bench::threadsOf([&] {
      for (int i = 0; i < line.desktops; ++i) {
        fLinks.push_back(std::make_unique<Link>(robotPort));
        fLinks.back()->set(settings);
      }
    });
  }
  int portFor(int desktop) const {
    return fLinks.empty() ? fRobotPort : fLinks[static_cast<std::size_t>(desktop)]->port();
  }
  const std::set<pid_t>& threads() const { return fThreads; }

 private:
  const int fRobotPort;
  std::vector<std::unique_ptr<Link>> fLinks;
  std::set<pid_t> fThreads;
};

void play(benchmark::State& state, const bench::Robot& robot, const Line& line) {
  for (auto _ : state) {
    const Network network(robot.address.port, line);
    std::vector<std::unique_ptr<Desktop>> desktops;
    for (int i = 0; i < line.desktops; ++i)
      desktops.push_back(std::make_unique<Desktop>(network.portFor(i), line));
    std::this_thread::sleep_for(kWarmUp);
    for (const auto& desktop : desktops) desktop->measure(true);
    const bench::CpuTime cpu(robot.process.pid(), network.threads());
    std::this_thread::sleep_for(kMeasured);
    for (const auto& desktop : desktops) desktop->measure(false);
    const double onRobot = cpu.robot(), onDesktops = cpu.desktop();
    const std::string carried = desktops.front()->carried();
    for (const auto& desktop : desktops) desktop->stop();
    const double seconds = std::chrono::duration<double>(kMeasured).count();
    std::vector<double> rates;
    std::set<Print> all;
    for (const auto& desktop : desktops) {
      rates.push_back(static_cast<double>(desktop->seen().size()) / seconds);
      all.insert(desktop->seen().begin(), desktop->seen().end());
    }
    std::sort(rates.begin(), rates.end());
    state.counters["least_fps"] = rates.front();
    state.counters["median_fps"] = rates[rates.size() / 2];
    state.counters["pictures_made"] = static_cast<double>(all.size()) / seconds;
    state.counters["robot_cpu"] = onRobot;
    state.counters["desktops_cpu"] = onDesktops;
    std::printf(
        "%s (%s): %.1f frames a second at least, %.1f median; %.1f different pictures a "
        "second; robot %.0f%%, all desktops %.0f%% of a core\n",
        line.name, carried.c_str(), rates.front(), rates[rates.size() / 2],
        static_cast<double>(all.size()) / seconds, onRobot, onDesktops);
    if (line.fps > 0)
      bench::atLeast(std::string("frames a second of 30 for each of ") + line.name, rates.front(),
                     line.fps);
  }
}

int run(int argc, char** argv) {
  const bench::Robot robot;
  for (const Line& line : kLines)
    bench::once(std::string("desktops/") + line.name,
                [&](benchmark::State& state) { play(state, robot, line); });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
