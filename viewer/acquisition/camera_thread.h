// SPDX-License-Identifier: Apache-2.0
// The viewer's polling loop.
#pragma once

#include <QThread>
#include <QTimer>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <functional>

class Model;
class Module;

// Fetches an image and refreshes the overlays on every tick of a timer, in its own thread, at the
// frame rate that the model asks for. A tick is finished before the next one; missed ticks are
// dropped. Keeps neither module nor model alive: without them every slot does nothing.
//
// GUI thread: construction, onReady(), start(), setEnableGetImage(), quit() and destruction. Before
// it is destroyed its event loop must have been left with quit() or exit(): the destructor waits
// for that.
class CameraThread : public QThread {
  Q_OBJECT

 public:
  CameraThread(boost::shared_ptr<Module> module, boost::shared_ptr<Model> model);
  ~CameraThread() override;

  // Before start(): what to call on the camera thread once polling can be enabled, which it may do
  // itself.
  void onReady(std::function<void()> callback);

  // Starts or stops polling. A tick that is running goes on to its end. Nobody listens before the
  // thread is ready: what is asked for earlier is not heard.
  void setEnableGetImage(bool enable);

  // Camera thread: whether the timer runs, and its period in ms (0 before run()).
  bool isPolling() const;
  int interval() const;

 signals:
  void startTimer();
  void stopTimer();

 public slots:
  // These three run in the thread of whoever calls them.
  void takePict();
  void previousImg();
  void nextImg();
  // One polling step. Camera thread.
  void onTimeOut();

 protected:
  void run() override;

 private:
  void poll();
  void followFrameRate(Model& model);

  boost::weak_ptr<Module> fModule;
  boost::weak_ptr<Model> fModel;
  boost::shared_ptr<QTimer> fTimer;  // camera thread; lives while run() does
  int fFps = 0;                      // camera thread; the rate that the timer is set to
  std::function<void()> fOnReady;    // not changed once the thread was started
  std::atomic<bool> fHasRun{false};
};
