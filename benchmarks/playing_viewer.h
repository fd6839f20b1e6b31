// SPDX-License-Identifier: Apache-2.0
// A robot in a process of its own and the viewer's module, thread and view that play its pictures.
#pragma once

#include <QTemporaryDir>
#include <boost/shared_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "known_keys.h"
#include "ky/broker.h"
#include "support/process.h"
#include "viewer/acquisition/camera_thread.h"
#include "viewer/core/module.h"
#include "viewer/view/view_image.h"

namespace bench {

struct Robot {
  // With keys it lets in only who has the desktop's.
  explicit Robot(const KnownKeys* keys = nullptr);

  QTemporaryDir home;
  Process process;
  Ky::KyAddress address;
};

// The main() of a benchmark with a window, which needs no display. `run` takes the command line and
// returns the exit code; what it throws is said on standard error.
int runWindowed(int argc, char** argv, int (*run)(int argc, char** argv));
// The same in windows on a real screen, see Screen.
int runOnScreen(int argc, char** argv, int (*run)(int argc, char** argv));

// As a program's main loop does: sleeps while there is nothing to do.
void runEventLoopFor(std::chrono::milliseconds time);

// Notes the age of every new picture, in milliseconds, once it is painted.
class WatchedView : public ViewImage {
 public:
  explicit WatchedView(const boost::shared_ptr<Model>& model)
      : ViewImage(model, nullptr), fModel(model) {}
  std::vector<double> takeAges() { return std::exchange(fAges, {}); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  boost::shared_ptr<Model> fModel;
  std::vector<double> fAges;  // milliseconds
};

// Plays from construction to destruction. GUI thread.
class PlayingViewer {
 public:
  static constexpr int kFps = 30;

  PlayingViewer(const Ky::KyAddress& robot, int resolution, const KnownKeys* keys = nullptr);
  ~PlayingViewer();
  PlayingViewer(const PlayingViewer&) = delete;
  PlayingViewer& operator=(const PlayingViewer&) = delete;

  WatchedView& view() { return *fView; }
  const boost::shared_ptr<Module>& module() const { return fModule; }
  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fBroker; }

 private:
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<Module> fModule;
  std::unique_ptr<WatchedView> fView;
  std::unique_ptr<GCInterface> fRepainter;
  std::unique_ptr<CameraThread> fThread;
};

}  // namespace bench
