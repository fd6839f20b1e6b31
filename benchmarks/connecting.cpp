// SPDX-License-Identifier: Apache-2.0
// How long does it take over a slow link until a robot's panel is there, and until the panel has
// followed a switch of the camera? At 100 ms a round trip, without keys and with them; a figure of
// 0.7 s is seven round trips.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "ky/proxy.h"
#include "lookout/lookout_widget.h"
#include "playing_viewer.h"
#include "plugins/plugin_catalog.h"
#include "robots/robot_dock.h"
#include "slow_link.h"
#include "support/wait.h"
#include "targets.h"

namespace {

constexpr std::chrono::milliseconds kWay{50};
constexpr int kRounds = 5;

template <class Action>
double secondsOf(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// A robot in a process of its own, with keys or without; this desktop has keys when the robot has.
class FarRobot {
 public:
  explicit FarRobot(bool hasKeys) : fHasKeys(hasKeys) {
    qputenv("XDG_CONFIG_HOME", fDesktop.path().toLocal8Bit());
    std::vector<std::string> arguments = {"--port", "0", "--home", fHome.path().toStdString()};
    if (hasKeys) makeKeys(arguments);
    fProcess = std::make_unique<Process>(KYROBOT, arguments);
    const auto line = fProcess->waitForLine("listening on ");
    if (!line) throw std::runtime_error("the robot did not start");
    fNear = Ky::KyAddress::parse(line->substr(line->rfind(' ') + 1));
    fLink = std::make_unique<bench::SlowLink>(fNear, kWay);
    if (hasKeys) desktopKeys().add(far().toString(), fPublicKey);
  }

  // Over the slow link. Keys are used beyond loopback only, as which this counts.
  Ky::KyAddress far() const { return {fHasKeys ? "0.0.0.0" : "127.0.0.1", fLink->port()}; }

  // All that the panel shows of the second camera is another than of the first.
  void makeCamerasDiffer() const {
    Ky::KyBrokerOptions options;
    options.name = "bench";
    options.parent = fNear;
    if (fHasKeys) {
      desktopKeys().add(fNear.toString(), fPublicKey);
      options.keys = Ky::KyKeyStore::defaultFolder();
    }
    const auto broker = Ky::KyBroker::create(options);
    const auto device = broker->getProxy("KyVideoDevice");
    for (const int camera : {0, 1}) {
      for (const int box : {7, 8, 11, 12, 13})
        device->callVoid("setParam", box, camera == 0 ? 1 : 0, camera);
      for (const int slider : {0, 1, 2, 3, 4, 5, 6, 17})
        device->callVoid("setParam", slider, 60 + 20 * camera, camera);
    }
    broker->shutdown();
  }

 private:
  static Ky::KyKeyStore desktopKeys() { return Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()); }
  void makeKeys(std::vector<std::string>& arguments) {
    Ky::KyKeyStore robot(fRobotKeys.path().toStdString() + "/keys");
    fPublicKey = robot.create().publicKey;
    robot.add("desktop", desktopKeys().create().publicKey);
    arguments.insert(arguments.end(), {"--keys", robot.folder().string()});
  }

  const bool fHasKeys;
  QTemporaryDir fDesktop;
  QTemporaryDir fRobotKeys;
  QTemporaryDir fHome;
  std::string fPublicKey;
  std::unique_ptr<Process> fProcess;
  Ky::KyAddress fNear;
  std::unique_ptr<bench::SlowLink> fLink;
};

// Lookout's window with the one robot.
class Window {
 public:
  Window(const Lookout::Plugin& plugin, const Ky::KyAddress& robot)
      : fDock(plugin, robot, PERISCOPE_ICONS, fCloser) {
    fWindow.addDockWidget(Qt::TopDockWidgetArea, &fDock);
    fWindow.show();
  }

  // Until the panel is painted.
  void connectAndWait() {
    fDock.session().start();
    if (!waitUntil([&] {
          const QWidget* panel = fDock.session().widget();
          return panel != nullptr && panel->isVisible();
        }))
      throw std::runtime_error("no panel: " + fDock.session().problem().toStdString());
    fWindow.grab();
  }
  void switchCamera() {
    for (QPushButton* button : fDock.session().widget()->findChildren<QPushButton*>())
      if (button->text() == "Switch camera") return button->click();
    throw std::runtime_error("there is no button to switch the camera");
  }

 private:
  Lookout::BrokerCloser fCloser;
  QMainWindow fWindow;
  Lookout::RobotDock fDock;
};

void measure(benchmark::State& state, bool hasKeys) {
  const std::string how = hasKeys ? ", with keys" : "";
  for (auto _ : state) {
    const FarRobot robot(hasKeys);
    robot.makeCamerasDiffer();
    const Lookout::PluginCatalog plugins(PERISCOPE_PLUGINS);
    if (plugins.forRobots() == nullptr) throw std::runtime_error(plugins.error().toStdString());
    std::vector<double> connecting, there, back;
    for (int round = 0; round < kRounds; ++round) {
      Window window(*plugins.forRobots(), robot.far());
      connecting.push_back(secondsOf([&] { window.connectAndWait(); }));
      there.push_back(secondsOf([&] { window.switchCamera(); }));
      back.push_back(secondsOf([&] { window.switchCamera(); }));
    }
    bench::atMost("s from connecting to the panel at 100 ms a round trip" + how,
                  medianOf(connecting), 1);
    bench::atMost("s for switching to a camera without automatic modes" + how, medianOf(there), 1);
    bench::atMost("s for switching to a camera with automatic modes" + how, medianOf(back), 1);
  }
}

int run(int argc, char** argv) {
  bench::once("without_keys", [](benchmark::State& state) { measure(state, false); });
  bench::once("with_keys", [](benchmark::State& state) { measure(state, true); });
  return bench::runOnce(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  return bench::runWindowed(argc, argv, run);
}
