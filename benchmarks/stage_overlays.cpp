// SPDX-License-Identifier: Apache-2.0
// What do the stage's overlays cost: copying 1,000 figures out of the model, and drawing them with
// their labels on 1280 x 960 pixels of a screen, against half the time between two pictures?
#include "viewer/stage/overlays/stage_overlays.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <boost/make_shared.hpp>
#include <cmath>
#include <utility>

#include "targets.h"
#include "viewer/core/model.h"

namespace {

constexpr QSize kView(1280, 960);
constexpr int kFigures = 1000;
constexpr double kHalfTickMs = 16;
constexpr double kLookMs = 1;

// Which wander about, each on its own way.
displayObject figure(int number, double time) {
  displayObject item;
  item.x = 0.5 + 0.48 * std::sin(number * 1.7 + time * 0.01);
  item.y = 0.5 + 0.48 * std::cos(number * 2.3 + time * 0.007);
  item.diameter = 2 + number % 7;
  item.thickness = number % 3;
  item.shape = number % 3;
  item.colour = number % 2 == 0 ? 0x0000C8 : 0xFFA000;
  item.description = "figure " + std::to_string(number);
  return item;
}

std::vector<Moment::Source> figures(double time) {
  OverlaySource source{"figures", 0, {}};
  for (int i = 0; i < kFigures; ++i) source.items.push_back(figure(i, time));
  Moment::Source shown;
  shown.set = std::make_shared<const OverlaySource>(std::move(source));
  return {shown};
}

OverlayLook look() {
  OverlayLook look;
  look.picture = kView;
  look.view = QRect(QPoint(), kView);
  look.font = QApplication::font();
  return look;
}

void drawOn(QImage& image, StageOverlays& overlays, double time, benchmark::State& state) {
  state.PauseTiming();
  const std::vector<Moment::Source> sources = figures(time);
  state.ResumeTiming();
  QPainter painter(&image);
  overlays.paint(painter, sources, look());
}

void draw(benchmark::State& state) {
  QImage image(kView, QImage::Format_RGB32);
  image.fill(Qt::gray);
  static StageOverlays overlays;
  static double time = 0;
  for (auto _ : state) drawOn(image, overlays, ++time, state);
  state.counters["labels"] = static_cast<double>(overlays.labelRects().size());
}

// Nothing was painted before.
void drawFirst(benchmark::State& state) {
  QImage image(kView, QImage::Format_RGB32);
  image.fill(Qt::gray);
  for (auto _ : state) {
    StageOverlays overlays;
    drawOn(image, overlays, 0, state);
  }
}

void copy(benchmark::State& state) {
  Model model;
  model.addObjectWatch("figures");
  {
    const Ky::KyCriticalSection lock(model.fObjectsMutex);
    auto& items = model.fObjects["figures"].fObjects;
    for (int i = 0; i < kFigures; ++i) items["figure " + std::to_string(i)] = figure(i, 0);
  }
  for (auto _ : state) benchmark::DoNotOptimize(overlaysOf(model));
}

BENCHMARK(drawFirst)->Unit(benchmark::kMillisecond);
BENCHMARK(draw)->Unit(benchmark::kMillisecond);
BENCHMARK(copy)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  auto median = bench::medians(argc, argv);
  bench::atMost("the stage: drawing 1,000 figures with labels / half a tick of 16 ms",
                median["draw"] / kHalfTickMs, 1);
  bench::atMost("the stage: copying 1,000 figures from the model / 1 ms", median["copy"] / kLookMs,
                1);
}
