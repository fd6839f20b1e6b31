// SPDX-License-Identifier: Apache-2.0
// What does recording cost those who watch, and how many frames of the film are doubled meanwhile?
// A real robot in a process of its own records its generated scene while the real viewer shows it.
#include <benchmark/benchmark.h>

#include <opencv2/core.hpp>
#include <opencv2/videoio.hpp>
#include <string>

#include "ky/proxy.h"
#include "ky/video_recorder_proxy.h"
#include "playing_viewer.h"
#include "targets.h"

namespace {

constexpr std::chrono::milliseconds kWarmUp{2500};  // the shown rate is right only after 30 frames
constexpr std::chrono::milliseconds kMeasured{5000};

struct Watched {
  int shown;  // resolutions
  int recorded;
  std::string name() const {
    return Model::resolutionToString(recorded) + " while showing " +
           Model::resolutionToString(shown);
  }
};

// The scene's clock changes with every picture: where it does not, a frame is doubled.
int doubledFramesIn(const std::string& path) {
  cv::VideoCapture film(path, cv::CAP_FFMPEG);
  const double scale = film.get(cv::CAP_PROP_FRAME_WIDTH) / 1280;
  const cv::Rect2d clock(28 * scale, 78 * scale, 372 * scale, 68 * scale);
  int doubled = 0;
  cv::Mat before;
  for (cv::Mat frame; film.read(frame);) {
    const cv::Mat now = frame(clock).clone();
    if (!before.empty() && cv::norm(before, now, cv::NORM_L1) < static_cast<double>(now.total()))
      ++doubled;
    before = now;
  }
  return doubled;
}

void record(benchmark::State& state, const bench::Robot& robot, const Watched& watched) {
  for (auto _ : state) {
    bench::PlayingViewer viewer(robot.address, watched.shown);
    viewer.broker()->getProxy("KyVideoRecorder")->callVoid("setResolution", watched.recorded);
    Ky::KyVideoRecorderProxy recorder(viewer.broker());
    bench::runEventLoopFor(kWarmUp);
    state.counters["shown_before"] = viewer.view().shownFrameRate();
    recorder.startRecording("/home/tam/recordings/cameras/", "clip");
    bench::runEventLoopFor(kMeasured);
    const double shown = viewer.view().shownFrameRate();
    const Ky::KyValue film = recorder.stopRecording();
    const std::string home = robot.home.path().toStdString() + "/";
    const double frames = film[0].asInt();
    const int doubled = doubledFramesIn(home + film[1].asString().substr(10));
    state.counters["shown"] = shown;
    state.counters["frames"] = frames;
    state.counters["doubled"] = doubled;
    bench::atLeast("frames a second shown of 30, recording " + watched.name(), shown, 29);
    bench::atLeast("frames recorded of 15 a second at " + watched.name(),
                   frames * 1000 / kMeasured.count(), 14.8);
    bench::atMost("of 100 frames doubled, recording " + watched.name(), 100 * doubled / frames, 1);
  }
}

int run(int argc, char** argv) {
  const bench::Robot robot;
  for (const Watched& watched : {Watched{2, 1}, Watched{2, 3}, Watched{3, 3}}) {
    bench::once("record/" + watched.name(),
                [&, watched](benchmark::State& state) { record(state, robot, watched); });
  }
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
