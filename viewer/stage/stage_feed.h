// SPDX-License-Identifier: Apache-2.0
// Says what a stage shows now.
#pragma once

#include <QObject>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <set>
#include <string>

#include "viewer/core/frame_feed.h"
#include "viewer/stage/overlays/moment.h"

class Model;

// Looks at the model whenever a picture has come, and tells. GUI thread; the model may go first.
class StageFeed : public QObject {
  Q_OBJECT

 public:
  explicit StageFeed(const boost::shared_ptr<Model>& model, QObject* parent = nullptr);
  ~StageFeed() override;

  // While nobody sees it nothing is looked at. At first nobody does.
  void setWatched(bool watched);
  // What is shown stays; the rest goes on.
  void setFrozen(bool frozen);
  bool isFrozen() const { return fIsFrozen; }
  void setOnFrame(bool on);
  // Keys of what is not drawn.
  void setHidden(std::set<std::string> keys);

  void look();
  const Moment::Shown& shown() const { return fShown; }

 signals:
  void changed();

 private:
  boost::weak_ptr<Model> fModel;
  Moment fMoment;
  Moment::Shown fShown;
  std::set<std::string> fHidden;
  bool fIsWatched = false;
  bool fIsFrozen = false;
  std::atomic<bool> fIsTold = false;  // of a picture that was not looked at yet
  std::unique_ptr<FrameFeed::Watch> fWatch;
};
