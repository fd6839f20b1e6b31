// SPDX-License-Identifier: Apache-2.0
// What do overlays cost: decoding 10,000 records, against converting ten pictures; and painting
// 1,000 figures with texts, against the time between two pictures?
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <vector>

#include "targets.h"
#include "viewer/acquisition/yuv_conversion.h"
#include "viewer/core/model.h"
#include "viewer/detection/decoder.h"
#include "viewer/view/lettering.h"
#include "viewer/view/overlay_painter.h"

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr int kConversions = 10;
constexpr std::size_t kRecords = 10000;
constexpr std::size_t kFigures = 1000;
constexpr double kTickMs = 33;

Ky::KyValue records(std::size_t count) {
  Ky::KyValue::Array all;
  for (std::size_t i = 0; i < count; ++i) {
    const double place = static_cast<double>(i % 1000) / 1000;
    const int shape = static_cast<int>(i % 3);
    all.push_back(Ky::KyValue::array(
        {place, 1 - place, 30.0, 2, shape, 255, 160, 0, "figure " + std::to_string(i)}));
  }
  return all;
}

void decode(benchmark::State& state) {
  const Ky::KyValue value = records(kRecords);
  Items items;
  for (auto _ : state) {
    decodeCustomObjects(value, FieldOfView(), items);
    state.PauseTiming();
    items.clear();
    state.ResumeTiming();
  }
}

void convert(benchmark::State& state) {
  static Model model;
  std::vector<std::uint8_t> picture(kWidth * kHeight * 2, 90);
  for (auto _ : state)
    for (int i = 0; i < kConversions; ++i) {
      yuv::convert422(picture.data(), kWidth, kHeight, model.fImageData);
      benchmark::ClobberMemory();
    }
}

void paint(benchmark::State& state) {
  Items items;
  decodeCustomObjects(records(kFigures), FieldOfView(), items);
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  Lettering lettering;
  for (auto _ : state) {
    QPainter painter(&image);
    lettering.begin(painter);
    for (const auto& [name, item] : items)
      paintOverlay(painter, lettering, item, QSizeF(320, 240), QRectF(image.rect()));
  }
}

BENCHMARK(decode)->Unit(benchmark::kMillisecond);
BENCHMARK(convert)->Unit(benchmark::kMillisecond);
BENCHMARK(paint)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  auto median = bench::medians(argc, argv);
  bench::atMost("decoding 10,000 records / converting ten 640 x 480 pictures",
                median["decode"] / median["convert"], 1);
  bench::atMost("painting 1,000 figures with texts / a tick of 33 ms", median["paint"] / kTickMs,
                0.3);
}
