// SPDX-License-Identifier: Apache-2.0
// Does a stage hold anything up? With the small view beside it, 640 x 480 at 30 pictures a second,
// in windows on a real screen: how much older a picture is when the stage has painted it, and what
// rate is left to the small view while stages are opened, zoomed and filmed.
#include "viewer/stage/stage.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

#include "playing_viewer.h"
#include "targets.h"
#include "viewer/stage/stage_canvas.h"
#include "viewer/stage/stage_keeper.h"
#include "zu/os.h"

namespace {

using namespace std::chrono_literals;

constexpr auto kWarmUp = 2s;
constexpr auto kWatched = 8s;
constexpr int kResolution = 2;  // 640 x 480

double percentile95(std::vector<double> values) {
  if (values.empty()) throw std::runtime_error("no picture was shown");
  std::sort(values.begin(), values.end());
  return values[values.size() * 95 / 100];
}

struct Player : LookoutWidget {
  bool isPlaying() const override { return true; }
  double frameRateWanted() const override { return bench::PlayingViewer::kFps; }
};

class Beside {
 public:
  explicit Beside(const Ky::KyAddress& robot) : viewer(robot, kResolution) {}

  void open() {
    stage = std::make_unique<Stage>(fPlayer, viewer.module(), "robot", nullptr);
    stage->resize(1280, 900);
    stage->show();
    QObject::connect(&stage->canvas(), &StageCanvas::painted, stage.get(), [this] {
      const std::int64_t captured = stage->canvas().scene().frame()->timestamp;
      ages.push_back(static_cast<double>(zu::os::nowMicroseconds() - captured) / 1e3);
    });
  }
  // Of the small view, while `act` is done ten times a second.
  double rateWhile(const std::function<void()>& act) {
    QTimer often;
    QObject::connect(&often, &QTimer::timeout, act);
    often.start(100ms);
    const std::uint64_t before = viewer.view().framesPainted();
    bench::runEventLoopFor(kWatched);
    return static_cast<double>(viewer.view().framesPainted() - before) /
           std::chrono::duration<double>(kWatched).count();
  }

  bench::PlayingViewer viewer;
  std::unique_ptr<Stage> stage;
  std::vector<double> ages;  // milliseconds

 private:
  Player fPlayer;
};

void measureAges(const Ky::KyAddress& robot) {
  Beside beside(robot);
  beside.open();
  bench::runEventLoopFor(kWarmUp);
  beside.viewer.view().takeAges();
  beside.ages.clear();
  bench::runEventLoopFor(kWatched);
  const double small = percentile95(beside.viewer.view().takeAges());
  bench::atMost("ms more than in the small view until a picture is on the stage, 95 of 100",
                percentile95(beside.ages) - small, 5);
}

void measureOpening(const Ky::KyAddress& robot) {
  Beside beside(robot);
  bench::runEventLoopFor(kWarmUp);
  int count = 0;
  const double rate = beside.rateWhile([&] {
    if (++count % 5 != 0) return;
    if (beside.stage)
      beside.stage.reset();
    else
      beside.open();
  });
  bench::atLeast("pictures a second in the small view while a stage opens and closes", rate, 29);
}

void measureZooming(const Ky::KyAddress& robot) {
  Beside beside(robot);
  beside.open();
  bench::runEventLoopFor(kWarmUp);
  int count = 0;
  const double rate = beside.rateWhile([&] {
    const double factor = ++count / 20 % 2 == 0 ? 1.2 : 1 / 1.2;
    beside.stage->canvas().zoomBy(factor);
  });
  bench::atLeast("pictures a second in the small view while the stage is zoomed", rate, 29);
}

void measureFilming(const Ky::KyAddress& robot) {
  const QTemporaryDir home;
  qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
  qputenv("HOME", home.path().toUtf8());
  Beside beside(robot);
  beside.open();
  bench::runEventLoopFor(kWarmUp);
  auto* keeper = beside.stage->findChild<StageKeeper*>();
  if (!keeper->beginFilm(bench::PlayingViewer::kFps)) throw std::runtime_error("there is no film");
  const double rate = beside.rateWhile([] {});
  std::printf("%s\n", keeper->filmText().toUtf8().constData());
  bench::atLeast("pictures a second in the small view while the stage is filmed", rate, 29);
  bench::atMost("pictures missing in the film", keeper->missing(), 0);
}

int run(int argc, char** argv) {
  const bench::Robot robot;
  const auto row = [&robot](const char* name, void (*measure)(const Ky::KyAddress&)) {
    bench::once(name, [&robot, measure](benchmark::State& state) {
      for (auto _ : state) measure(robot.address);
    });
  };
  row("stage/age", measureAges);
  row("stage/opening", measureOpening);
  row("stage/zooming", measureZooming);
  row("stage/filming", measureFilming);
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runOnScreen(argc, argv, run);
}
