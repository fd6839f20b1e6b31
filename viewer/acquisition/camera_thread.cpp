// SPDX-License-Identifier: Apache-2.0
#include "viewer/acquisition/camera_thread.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "viewer/core/model.h"
#include "viewer/core/module.h"

namespace {

int requestedFps(const Model& model) {
  const Ky::KyCriticalSectionRead guard(model.fParamMutex);
  return model.fFps;
}

}  // namespace

CameraThread::CameraThread(boost::shared_ptr<Module> module, boost::shared_ptr<Model> model)
    : fModule(module), fModel(model) {
}

CameraThread::~CameraThread() {
  wait();
  // What run() has left may be released here. wait() sees to that; this read and the write at the
  // end of run() tell it to thread checkers, which can't look into Qt.
  fHasRun.load();
}

void CameraThread::onReady(std::function<void()> callback) {
  fOnReady = std::move(callback);
}

void CameraThread::setEnableGetImage(bool enable) {
  if (enable)
    emit startTimer();
  else
    emit stopTimer();
}

bool CameraThread::isPolling() const {
  return fTimer && fTimer->isActive();
}

int CameraThread::interval() const {
  return fTimer ? fTimer->interval() : 0;
}

void CameraThread::takePict() {
  const auto module = fModule.lock();
  const auto model = fModel.lock();
  if (module && model) module->takePicture();
}

void CameraThread::previousImg() {
  const auto module = fModule.lock();
  const auto model = fModel.lock();
  if (module && model) module->previousImage();
}

void CameraThread::nextImg() {
  const auto module = fModule.lock();
  const auto model = fModel.lock();
  if (module && model) module->nextImage();
}

void CameraThread::onTimeOut() {
  const auto module = fModule.lock();
  const auto model = fModel.lock();
  if (!module || !model) return;
  followFrameRate(*model);
  module->getNext();
  module->updateObjectsValue();
}

// A rate of 0 leaves the old interval in place.
void CameraThread::followFrameRate(Model& model) {
  const int fps = requestedFps(model);
  if (fps == fFps) return;
  fFps = fps;
  if (fFps != 0 && fTimer) fTimer->setInterval(1000 / fFps);
}

void CameraThread::run() {
  poll();
  fHasRun = true;
}

void CameraThread::poll() {
  {
    const auto model = fModel.lock();
    if (!model) return;
    fTimer = boost::make_shared<QTimer>();
    fFps = requestedFps(*model);
  }
  fTimer->setTimerType(Qt::PreciseTimer);  // a coarse one drifts away from 30 a second
  fTimer->setInterval(1000 / fFps);
  connect(fTimer.get(), SIGNAL(timeout()), this, SLOT(onTimeOut()), Qt::DirectConnection);
  connect(this, SIGNAL(startTimer()), fTimer.get(), SLOT(start()));
  connect(this, SIGNAL(stopTimer()), fTimer.get(), SLOT(stop()));
  if (fOnReady) fOnReady();
  exec();
  // A timer can be stopped in its own thread only.
  fTimer.reset();
}
