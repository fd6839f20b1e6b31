// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_feed.h"

#include "viewer/core/model.h"
#include "viewer/stage/overlays/overlay_source.h"

StageFeed::StageFeed(const boost::shared_ptr<Model>& model, QObject* parent)
    : QObject(parent), fModel(model) {
}

// Nobody is told any more before the rest goes.
StageFeed::~StageFeed() {
  fWatch.reset();
}

void StageFeed::setWatched(bool watched) {
  if (watched == fIsWatched) return;
  fIsWatched = watched;
  fWatch.reset();
  const auto model = fModel.lock();
  if (!model || !watched) return;
  fWatch = model->fFrames.watch([this] {
    if (!fIsTold.exchange(true))
      QMetaObject::invokeMethod(this, &StageFeed::look, Qt::QueuedConnection);
  });
  look();
}

void StageFeed::setFrozen(bool frozen) {
  fIsFrozen = frozen;
  look();
}

void StageFeed::setOnFrame(bool on) {
  fMoment.setOnFrame(on);
  look();
}

void StageFeed::setHidden(std::set<std::string> keys) {
  fHidden = std::move(keys);
  look();
}

void StageFeed::look() {
  fIsTold = false;
  const auto model = fModel.lock();
  if (!model || !fIsWatched || fIsFrozen) return;
  fShown = fMoment.look(model->fFrames.recent(), overlaysOf(*model), fHidden);
  emit changed();
}
