// How many pictures a second does the viewer show when 30 are asked for, and how old is a picture
// when it is painted? A real robot in a process of its own, the real module, thread and view.
//
// With --minutes N it shows 640 x 480 for that long instead and says how much the memory has grown.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "acquisition/camera_thread.h"
#include "ky/broker.h"
#include "plugin/module.h"
#include "support/process.h"
#include "targets.h"
#include "view/view_image.h"
#include "zu/log.h"
#include "zu/os.h"

namespace {

constexpr int kFps = 30;
constexpr int kWarmUpMs = 2500;  // the shown rate is right only after 30 frames
constexpr int kMeasuredMs = 8000;

double residentMegabytes() {
  std::ifstream pages("/proc/self/statm");
  double size = 0, resident = 0;
  pages >> size >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

// Notes the age of every new picture once it is painted.
class WatchedView : public ViewImage {
 public:
  explicit WatchedView(const boost::shared_ptr<Model>& model)
      : ViewImage(model, nullptr), fModel(model) {}
  std::vector<double> takeAges() { return std::exchange(fAges, {}); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    const std::uint64_t before = framesPainted();
    const std::int64_t captured = fModel->fTimestamp;
    ViewImage::paintEvent(event);
    if (framesPainted() != before)
      fAges.push_back(static_cast<double>(zu::os::nowMicroseconds() - captured) / 1e3);
  }

 private:
  boost::shared_ptr<Model> fModel;
  std::vector<double> fAges;  // milliseconds
};

class Repainter : public GCInterface {
 public:
  explicit Repainter(ViewImage& view) : fView(view) {}
  void updateImage() override { fView.updateThreadSafe(); }
  void updateVideoRecorderView() override {}
  void selectVideoRecorderView() override {}
  void selectVideoSettingView() override {}

 private:
  ViewImage& fView;
};

struct Robot {
  Robot()
      : process(KYROBOT, {"--port", "0", "--home", home.path().toStdString()}),
        address(addressIn(process.waitForLine("listening on "))) {}

  static Ky::KyAddress addressIn(const std::optional<std::string>& line) {
    if (!line) throw std::runtime_error("the robot did not start");
    return Ky::KyAddress::parse(line->substr(line->rfind(' ') + 1));
  }

  QTemporaryDir home;
  Process process;
  Ky::KyAddress address;
};

boost::shared_ptr<Ky::KyBroker> connectTo(const Ky::KyAddress& robot) {
  Ky::KyBrokerOptions options;
  options.name = "PeriscopeBroker";
  options.parent = robot;
  return Ky::KyBroker::create(options);
}

void processEventsFor(qint64 milliseconds) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < milliseconds) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents,
                                    static_cast<int>(milliseconds - timer.elapsed()));
  }
}

class PlayingViewer {
 public:
  PlayingViewer(const Ky::KyAddress& robot, int resolution)
      : fBroker(connectTo(robot)), fModule(Ky::KyModule::createModule<Module>(fBroker)) {
    const auto& model = fModule->model();
    model->fResolution = resolution;
    model->fFps = kFps;
    fModule->askForVIM();
    fView = std::make_unique<WatchedView>(model);
    fRepainter = std::make_unique<Repainter>(*fView);
    fModule->setGui(fRepainter.get());
    fView->init();
    fView->show();
    fThread = std::make_unique<CameraThread>(fModule, model);
    fThread->start();
    fThread->setEnableGetImage(true);
  }
  ~PlayingViewer() {
    fThread->quit();
    fThread.reset();
    fModule->setGui(nullptr);
    fModule.reset();
    fBroker->shutdown();
  }
  WatchedView& view() { return *fView; }

 private:
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<Module> fModule;
  std::unique_ptr<WatchedView> fView;
  std::unique_ptr<Repainter> fRepainter;
  std::unique_ptr<CameraThread> fThread;
};

double percentile95(std::vector<double> values) {
  if (values.empty()) return 1e9;
  std::sort(values.begin(), values.end());
  return values[values.size() * 95 / 100];
}

void play(benchmark::State& state, const Ky::KyAddress& robot, int resolution) {
  const std::string name = Model::resolutionToString(resolution);
  for (auto _ : state) {
    PlayingViewer viewer(robot, resolution);
    processEventsFor(kWarmUpMs);
    viewer.view().takeAges();
    processEventsFor(kMeasuredMs);
    const double shown = viewer.view().shownFrameRate();
    const double age = percentile95(viewer.view().takeAges());
    state.counters["shown_fps"] = shown;
    state.counters["age_ms_p95"] = age;
    bench::atLeast("frames a second shown of 30 at " + name, shown, 29);
    bench::atMost("ms from capture to paint, 95th percentile, at " + name, age, 1000.0 / kFps + 20);
  }
}

// The first minute is for whatever is allocated once.
void watchMemory(const Ky::KyAddress& robot, int minutes) {
  PlayingViewer viewer(robot, 2);
  processEventsFor(60000);
  const double atFirst = residentMegabytes();
  for (int minute = 2; minute <= minutes; ++minute) {
    processEventsFor(60000);
    std::printf("minute %d: %.1f MB, %llu frames painted\n", minute, residentMegabytes(),
                static_cast<unsigned long long>(viewer.view().framesPainted()));
    std::fflush(stdout);
  }
  bench::atMost("MB grown in " + std::to_string(minutes) + " minutes",
                residentMegabytes() - atFirst, 2);
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
  const Robot robot;
  if (minutes > 0) {
    watchMemory(robot.address, minutes);
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  for (const int resolution : {2, 3}) {
    benchmark::RegisterBenchmark(
        ("play/" + Model::resolutionToString(resolution)).c_str(),
        [&, resolution](benchmark::State& state) { play(state, robot.address, resolution); })
        ->Iterations(1)
        ->Unit(benchmark::kSecond)
        ->UseRealTime();
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  zu::log::setConsoleLevel(zu::log::Level::warning);
  QApplication application(argc, argv);
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "frame_rate: %s\n", error.what());
    return 1;
  }
}
