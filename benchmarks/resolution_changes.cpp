// SPDX-License-Identifier: Apache-2.0
// A user changes the resolution 1,000 times in a row while H.264 comes over a narrow link: how long
// does a change take, how long until the picture has the last one's size, and what goes wrong?
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>

#include "ky/video_device_proxy.h"
#include "playing_viewer.h"
#include "support/link.h"
#include "support/wait.h"
#include "targets.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kChanges = 1000;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Subscribed as "me", over a link of 5 ms each way and 4 Mbit/s.
class Viewer {
 public:
  explicit Viewer(int robotPort) : fLink(robotPort) {
    LinkSettings settings;
    settings.delay = 5ms;
    settings.bitsPerSecond = 4'000'000;
    fLink.set(settings);
    Ky::KyBrokerOptions options;
    options.name = "desktop";
    options.parent = Ky::KyAddress{"127.0.0.1", fLink.port()};
    fBroker = Ky::KyBroker::create(options);
    fDevice = std::make_unique<Ky::KyVideoDeviceProxy>(fBroker);
    fDevice->subscribe("me", 2, 9, 30);
    const auto isEncoded = [&] {
      width();
      const auto streams = fBroker->statistics().streams;
      return !streams.empty() && streams.front().rfind("H.264", 0) == 0;
    };
    if (!waitUntil(isEncoded)) throw std::runtime_error("the pictures do not become H.264");
  }
  ~Viewer() {
    fDevice.reset();
    fBroker->shutdown();
  }
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  void change(int resolution) const { fDevice->setResolution("me", resolution); }
  int width() const { return fDevice->getImageRemote("me")[0].asInt(); }

 private:
  Link fLink;
  boost::shared_ptr<Ky::KyBroker> fBroker;
  std::unique_ptr<Ky::KyVideoDeviceProxy> fDevice;
};

void change(benchmark::State& state, int robotPort) {
  for (auto _ : state) {
    const Viewer viewer(robotPort);
    std::atomic<bool> isDone{false};
    std::atomic<int> errors{0};
    std::thread watching([&] {
      while (!isDone) {
        try {
          viewer.width();
        } catch (const Ky::KyError& error) {
          ++errors;
          std::fprintf(stderr, "%s\n", error.toString().c_str());
        }
        std::this_thread::sleep_for(5ms);
      }
    });
    const auto start = Clock::now();
    for (int i = 0; i < kChanges; ++i) viewer.change(i % 3);
    const double each = millisecondsSince(start) / kChanges;
    const auto last = Clock::now();
    isDone = true;
    watching.join();
    waitUntil([&] { return viewer.width() == 160 << (kChanges - 1) % 3; });
    const double settled = millisecondsSince(last);
    bench::atMost("errors in 1,000 changes of the resolution over 4 Mbit/s", errors, 0);
    bench::atMost("ms a change takes", each, 110);
    bench::atMost("ms until the picture has the last one's size", settled, 500);
  }
}

int run(int argc, char** argv) {
  const bench::Robot robot;
  bench::once("resolution_changes",
              [&](benchmark::State& state) { change(state, robot.address.port); });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
