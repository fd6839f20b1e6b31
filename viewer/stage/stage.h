// SPDX-License-Identifier: Apache-2.0
// The picture as large as there is room.
#pragma once

#include <QPointer>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>

#include "lookout/lookout_widget.h"
#include "viewer/core/frame_feed.h"

class Module;
class StageCanvas;

// A second view of what the viewer's widget shows, for a dock of its own. GUI thread. Plays and
// pauses with the widget that it belongs to.
class Stage : public LookoutWidget {
  Q_OBJECT

 public:
  Stage(LookoutWidget& viewer, const boost::shared_ptr<Module>& module, QWidget* parent);
  ~Stage() override;

  void setPlaying(bool playing) override;
  bool isPlaying() const override;
  quint64 framesPainted() const override;
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const override;
  double frameRateWanted() const override;
  QString pictureProblem() const override;
  QWidget* pictureArea() const override;

 private:
  void showNewest();

  QPointer<LookoutWidget> fViewer;
  boost::weak_ptr<Module> fModule;
  StageCanvas* fCanvas = nullptr;
  std::atomic<bool> fIsTold = false;  // of a picture that was not looked at yet
  std::unique_ptr<FrameFeed::Watch> fWatch;
};
