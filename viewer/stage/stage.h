// SPDX-License-Identifier: Apache-2.0
// The picture as large as there is room.
#pragma once

#include <QPointer>
#include <QTimer>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>

#include "lookout/lookout_widget.h"
#include "lookout/picture_meter.h"
#include "viewer/core/frame_feed.h"
#include "viewer/stage/stage_actions.h"

class Module;
class QLabel;
class QPushButton;
class QToolBar;
class PixelLabel;
class StageCanvas;
class StageLine;

// A second view of what the viewer's widget shows, for a dock of its own: zoomed, turned and
// measured without any effect on the viewer, with which it plays and pauses. Nothing is converted
// or painted while nobody can see it. GUI thread; goes before the viewer.
class Stage : public LookoutWidget {
  Q_OBJECT

 public:
  Stage(LookoutWidget& viewer, const boost::shared_ptr<Module>& module, QWidget* parent);
  ~Stage() override;

  void setPlaying(bool playing) override;
  bool isPlaying() const override;
  // What this view shows and how; as JSON, {"version": 1, ..}.
  QByteArray saveState() const override;
  bool restoreState(const QByteArray& state) override;
  quint64 framesPainted() const override;
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const override;
  double frameRateWanted() const override;
  QString pictureProblem() const override;
  QWidget* pictureArea() const override;
  QSize sizeHint() const override;

  const StageActions& actions() const { return fActions; }
  StageCanvas& canvas() { return *fCanvas; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void build();
  QToolBar* makeToolBar();
  QLabel* makeBadge();
  void connectLooking();
  void connectMeasuring();
  void connectPicture();
  void listen(Module& module);
  void showNewest();
  void countDropped();
  void refresh();
  void showBadge();
  void showPixel();
  void placeLabels();
  void showShortcuts();
  QString encoding() const;

  QPointer<LookoutWidget> fViewer;
  boost::weak_ptr<Module> fModule;
  StageActions fActions;
  QToolBar* fToolBar = nullptr;
  StageCanvas* fCanvas = nullptr;
  StageLine* fLine = nullptr;
  QLabel* fBadge = nullptr;            // over the picture: paused, frozen
  PixelLabel* fPixel = nullptr;        // over the picture
  QPushButton* fInvitation = nullptr;  // over the picture, before the first
  Lookout::PictureMeter fMeter;
  Lookout::PictureReading fReading;
  std::uint64_t fDropped = 0;
  std::uint64_t fNewestBefore = 0;  // the newest picture when one was painted last; 0: none yet
  QTimer fRefresh;
  std::atomic<bool> fIsTold = false;  // of a picture that was not looked at yet
  std::unique_ptr<FrameFeed::Watch> fWatch;
};
