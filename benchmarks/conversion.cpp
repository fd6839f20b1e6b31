// SPDX-License-Identifier: Apache-2.0
// How long does the conversion of the largest colour picture take, against merely copying the
// result and against OpenCV's conversion?
//
// Every picture lies in memory of its own, as it does when it comes from the network, and goes into
// the one frame buffer.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <new>
#include <opencv2/imgproc.hpp>
#include <random>
#include <vector>

#include "targets.h"
#include "viewer/acquisition/yuv_conversion.h"
#include "viewer/core/model.h"

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 960;
constexpr std::size_t kPictures = 8;
constexpr std::size_t kInputBytes = kWidth * kHeight * 2;
constexpr std::size_t kOutputBytes = kWidth * kHeight * 4;

struct Release {
  void operator()(std::uint8_t* bytes) const { ::operator delete[](bytes, std::align_val_t(64)); }
};
using Bytes = std::unique_ptr<std::uint8_t[], Release>;

Bytes noise(std::size_t size) {
  Bytes bytes(static_cast<std::uint8_t*>(::operator new[](size, std::align_val_t(64))));
  std::minstd_rand random(1);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(random() >> 8);
  return bytes;
}

// Pictures one after the other, for ever.
class Pictures {
 public:
  explicit Pictures(std::size_t size) {
    for (std::size_t i = 0; i < kPictures; ++i) fPictures.push_back(noise(size));
  }
  std::uint8_t* next() { return fPictures[fNext++ % kPictures].get(); }

 private:
  std::vector<Bytes> fPictures;
  std::size_t fNext = 0;
};

Model& model() {
  static Model model;
  return model;
}

Pictures& inputs() {
  static Pictures pictures(kInputBytes);
  return pictures;
}

Pictures& outputs() {
  static Pictures pictures(kOutputBytes);
  return pictures;
}

void ours(benchmark::State& state) {
  for (auto _ : state) {
    yuv::convert422(inputs().next(), kWidth, kHeight, model().fImageData);
    benchmark::ClobberMemory();
  }
}

void copyOfTheOutput(benchmark::State& state) {
  for (auto _ : state) {
    std::memcpy(model().fImageData, outputs().next(), kOutputBytes);
    benchmark::ClobberMemory();
  }
}

void openCv(benchmark::State& state) {
  cv::setNumThreads(1);
  cv::Mat out(kHeight, kWidth, CV_8UC4, model().fImageData);
  for (auto _ : state) {
    cv::cvtColor(cv::Mat(kHeight, kWidth, CV_8UC2, inputs().next()), out, cv::COLOR_YUV2BGRA_YUY2);
    benchmark::ClobberMemory();
  }
}

BENCHMARK(ours)->Unit(benchmark::kMicrosecond);
BENCHMARK(copyOfTheOutput)->Unit(benchmark::kMicrosecond);
BENCHMARK(openCv)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  // Memory is touched before anything is measured.
  model(), inputs(), outputs();
  auto median = bench::medians(argc, argv);
  bench::atMost("conversion of 1280 x 960 colour / memcpy of its output",
                median["ours"] / median["copyOfTheOutput"], 1.5);
  bench::atLeast("OpenCV's YUY2 to BGRA / our conversion", median["openCv"] / median["ours"], 2.0);
}
