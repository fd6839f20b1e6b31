// SPDX-License-Identifier: Apache-2.0
#include "playing_viewer.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>
#include <stdexcept>

#include "screen.h"
#include "zu/log.h"
#include "zu/os.h"

namespace bench {
namespace {

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

Ky::KyAddress addressIn(const std::optional<std::string>& line) {
  if (!line) throw std::runtime_error("the robot did not start");
  return Ky::KyAddress::parse(line->substr(line->rfind(' ') + 1));
}

std::vector<std::string> optionsOf(const Robot& robot, const KnownKeys* keys) {
  std::vector<std::string> options = {"--port", "0", "--home", robot.home.path().toStdString()};
  if (keys != nullptr) options.insert(options.end(), {"--keys", keys->robots()});
  return options;
}

boost::shared_ptr<Ky::KyBroker> connectTo(const Ky::KyAddress& robot, const KnownKeys* keys) {
  Ky::KyBrokerOptions options;
  options.name = "PeriscopeBroker";
  options.parent = robot;
  if (keys != nullptr) options.keys = keys->desktops(robot);
  return Ky::KyBroker::create(options);
}

}  // namespace

int runWindowed(int argc, char** argv, int (*run)(int argc, char** argv)) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  zu::log::setConsoleLevel(zu::log::Level::warning);
  const QApplication application(argc, argv);
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
}

int runOnScreen(int argc, char** argv, int (*run)(int argc, char** argv)) {
  try {
    const Screen screen;
    return runWindowed(argc, argv, run);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
}

Robot::Robot(const KnownKeys* keys)
    : process(KYROBOT, optionsOf(*this, keys)),
      address(addressIn(process.waitForLine("listening on "))) {
}

void runEventLoopFor(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

void WatchedView::paintEvent(QPaintEvent* event) {
  const std::uint64_t before = framesPainted();
  const std::int64_t captured = fModel->fTimestamp;
  ViewImage::paintEvent(event);
  if (framesPainted() != before)
    fAges.push_back(static_cast<double>(zu::os::nowMicroseconds() - captured) / 1e3);
}

PlayingViewer::PlayingViewer(const Ky::KyAddress& robot, int resolution, const KnownKeys* keys)
    : fBroker(connectTo(robot, keys)), fModule(Ky::KyModule::createModule<Module>(fBroker)) {
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
  fThread->onReady([this] { fThread->setEnableGetImage(true); });
  fThread->start();
}

PlayingViewer::~PlayingViewer() {
  fThread->quit();
  fThread.reset();
  fModule->setGui(nullptr);
  fModule.reset();
  fBroker->shutdown();
}

}  // namespace bench
