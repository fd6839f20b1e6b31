// SPDX-License-Identifier: Apache-2.0
// The picture as large as there is room.
#pragma once

#include <QPointer>
#include <QTimer>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "lookout/lookout_widget.h"
#include "lookout/picture_meter.h"
#include "viewer/stage/stage_actions.h"

class Module;
class QLabel;
class QPushButton;
class QToolBar;
class Notice;
class PixelLabel;
class ShortcutSheet;
class SourcesPanel;
class StageCanvas;
class StageFeed;
class StageKeeper;
class StageLine;

// A second view of what the viewer's widget shows, for a dock of its own: zoomed, turned and
// measured without any effect on the viewer, with which it plays and pauses. Nothing is converted
// or painted while nobody can see it. GUI thread; goes before the viewer.
class Stage : public LookoutWidget {
  Q_OBJECT

 public:
  // `robot`: its address, after which what is saved is called.
  Stage(LookoutWidget& viewer, const boost::shared_ptr<Module>& module, const QString& robot,
        QWidget* parent);
  ~Stage() override;

  void setPlaying(bool playing) override;
  // A frozen view does not play: it is not waited for.
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
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void build();
  QToolBar* makeToolBar();
  QLabel* makeBadge();
  void connectLooking();
  void connectMeasuring();
  void connectPicture();
  void connectKeeping();
  void showChange();
  void countDropped();
  void filmOrStop();
  void say(const QString& text, bool isGood);
  void updateWatched();
  void refresh();
  void showBadge();
  void showPixel();
  void placeLabels();
  void showShortcuts();
  QString encoding() const;
  bool isViewerPlaying() const;

  QPointer<LookoutWidget> fViewer;
  boost::weak_ptr<Module> fModule;
  StageActions fActions;
  StageFeed* fFeed = nullptr;
  StageKeeper* fKeeper = nullptr;
  QToolBar* fToolBar = nullptr;
  StageCanvas* fCanvas = nullptr;
  SourcesPanel* fSources = nullptr;  // beside the canvas
  StageLine* fLine = nullptr;
  QLabel* fBadge = nullptr;            // over the picture: paused, frozen
  PixelLabel* fPixel = nullptr;        // over the picture
  QPushButton* fInvitation = nullptr;  // over the picture, before the first
  Lookout::PictureMeter fMeter;
  Lookout::PictureReading fReading;
  std::uint64_t fDropped = 0;
  std::uint64_t fPaintedBefore = 0;  // the picture that was painted last; 0: none yet
  QTimer fRefresh;
  QPointer<ShortcutSheet> fSheet;
  Notice* fNotice = nullptr;  // over the picture; null until there is something to say
};
