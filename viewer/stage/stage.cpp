// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage.h"

#include <QVBoxLayout>

#include "viewer/core/module.h"
#include "viewer/stage/stage_canvas.h"

Stage::Stage(LookoutWidget& viewer, const boost::shared_ptr<Module>& module, QWidget* parent)
    : LookoutWidget(parent), fViewer(&viewer), fModule(module), fCanvas(new StageCanvas(this)) {
  setWindowTitle(tr("Stage"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(fCanvas);
  fWatch = module->model()->fFrames.watch([this] {
    if (!fIsTold.exchange(true))
      QMetaObject::invokeMethod(this, &Stage::showNewest, Qt::QueuedConnection);
  });
  showNewest();
}

// Nobody is told any more before the rest goes.
Stage::~Stage() {
  fWatch.reset();
}

void Stage::showNewest() {
  fIsTold = false;
  if (const auto module = fModule.lock()) fCanvas->show(module->model()->fFrames.newest());
}

void Stage::setPlaying(bool playing) {
  if (fViewer) fViewer->setPlaying(playing);
}

bool Stage::isPlaying() const {
  return fViewer && fViewer->isPlaying();
}

quint64 Stage::framesPainted() const {
  return fCanvas->framesPainted();
}

std::optional<std::chrono::steady_clock::time_point> Stage::lastPainted() const {
  return {};
}

double Stage::frameRateWanted() const {
  return fViewer ? fViewer->frameRateWanted() : 0;
}

QString Stage::pictureProblem() const {
  return fViewer ? fViewer->pictureProblem() : QString();
}

QWidget* Stage::pictureArea() const {
  return fCanvas;
}
