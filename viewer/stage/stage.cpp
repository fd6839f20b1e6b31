// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage.h"

#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "viewer/core/module.h"
#include "viewer/stage/overlays/sources_panel.h"
#include "viewer/stage/pixel_label.h"
#include "viewer/stage/stage_canvas.h"
#include "viewer/stage/stage_feed.h"
#include "viewer/stage/stage_keeper.h"
#include "viewer/stage/stage_line.h"

namespace {

constexpr int kRefreshMs = 250;
constexpr double kZoomStep = 1.25;

constexpr const char* kOverPicture =
    "QLabel { color: white; background: rgba(0, 0, 0, 170); padding: 4px 8px; font-weight: bold; }";

}  // namespace

Stage::Stage(LookoutWidget& viewer, const boost::shared_ptr<Module>& module, const QString& robot,
             QWidget* parent)
    : LookoutWidget(parent),
      fViewer(&viewer),
      fModule(module),
      fActions(*this),
      fFeed(new StageFeed(module->model(), this)) {
  setWindowTitle(tr("Stage"));
  setAccessibleName(windowTitle());
  setFocusPolicy(Qt::StrongFocus);
  build();
  fKeeper = new StageKeeper(fCanvas->scene(), robot, this);
  connectPicture();
  connectLooking();
  connectMeasuring();
  connectKeeping();
  connect(&fRefresh, &QTimer::timeout, this, &Stage::refresh);
  fRefresh.start(kRefreshMs);
  refresh();
}

// A film ends before what it shows goes.
Stage::~Stage() {
  delete fKeeper;
}

// ---- construction

void Stage::build() {
  fToolBar = makeToolBar();
  fCanvas = new StageCanvas(this);
  fSources = new SourcesPanel(this);
  fSources->hide();
  fLine = new StageLine(this);
  fBadge = makeBadge();
  fPixel = new PixelLabel(fCanvas);
  fPixel->hide();
  fInvitation = new QPushButton(tr("Press to play"), fCanvas);
  fInvitation->setDefault(true);
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.5);
  fInvitation->setFont(large);
  connect(fInvitation, &QPushButton::clicked, this, [this] { setPlaying(true); });

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(fToolBar);
  auto* middle = new QSplitter(this);
  middle->setChildrenCollapsible(false);
  middle->addWidget(fCanvas);
  middle->addWidget(fSources);
  middle->setStretchFactor(0, 1);
  layout->addWidget(middle, 1);
  layout->addWidget(fLine);
}

QToolBar* Stage::makeToolBar() {
  auto* bar = new QToolBar(tr("Stage tools"), this);
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  bar->addActions({fActions.play, fActions.freeze});
  bar->addSeparator();
  bar->addActions({fActions.fit, fActions.oneToOne, fActions.zoomOut, fActions.zoomIn,
                   fActions.turnRight, fActions.mirror});
  bar->addSeparator();
  bar->addActions(
      {fActions.overlays, fActions.sources, fActions.grid, fActions.pixel, fActions.histogram});
  bar->addSeparator();
  bar->addActions({fActions.save, fActions.copy, fActions.film, fActions.files});
  bar->addSeparator();
  bar->addActions({fActions.fullScreen, fActions.help});
  return bar;
}

QLabel* Stage::makeBadge() {
  auto* badge = new QLabel(fCanvas);
  badge->setTextFormat(Qt::PlainText);
  badge->setAttribute(Qt::WA_TransparentForMouseEvents);
  badge->setStyleSheet(kOverPicture);
  badge->hide();
  return badge;
}

void Stage::connectPicture() {
  connect(fActions.play, &QAction::triggered, this, [this] { setPlaying(!isViewerPlaying()); });
  connect(fFeed, &StageFeed::changed, this, &Stage::showChange);
  connect(fActions.freeze, &QAction::toggled, this, [this](bool frozen) {
    fFeed->setFrozen(frozen);
    fPaintedBefore = 0;
    refresh();
  });
  connect(fActions.another, &QAction::triggered, this, [this] {
    if (fViewer) emit fViewer->viewWanted("stage", true);
  });
  connect(fActions.fullScreen, &QAction::triggered, this, &LookoutWidget::fullScreenWanted);
  connect(fCanvas, &StageCanvas::doubleClicked, this,
          [this] { emit fullScreenWanted(!window()->isFullScreen()); });
  connect(fCanvas, &StageCanvas::painted, this, &Stage::countDropped);
  connect(fCanvas, &StageCanvas::painted, fInvitation, &QWidget::hide);
  connect(fActions.help, &QAction::triggered, this, &Stage::showShortcuts);
}

void Stage::connectLooking() {
  connect(fActions.fit, &QAction::triggered, fCanvas, &StageCanvas::fit);
  connect(fActions.oneToOne, &QAction::triggered, this, [this] { fCanvas->zoomTo(1); });
  connect(fActions.zoomIn, &QAction::triggered, this, [this] { fCanvas->zoomBy(kZoomStep); });
  connect(fActions.zoomOut, &QAction::triggered, this, [this] { fCanvas->zoomBy(1 / kZoomStep); });
  connect(fActions.turnRight, &QAction::triggered, this, [this] { fCanvas->turn(1); });
  connect(fActions.turnLeft, &QAction::triggered, this, [this] { fCanvas->turn(-1); });
  connect(fActions.mirror, &QAction::toggled, fCanvas, &StageCanvas::setMirrored);
  connect(fCanvas, &StageCanvas::viewChanged, this, &Stage::refresh);
}

void Stage::connectMeasuring() {
  const auto look = [this](QAction* action, bool StageScene::Look::*part) {
    connect(action, &QAction::toggled, this, [this, part](bool shown) {
      fCanvas->scene().look().*part = shown;
      fCanvas->refresh();
    });
  };
  look(fActions.overlays, &StageScene::Look::overlays);
  look(fActions.grid, &StageScene::Look::grid);
  for (QWidget* part : fSources->findChildren<QWidget*>()) part->installEventFilter(this);
  connect(fActions.sources, &QAction::toggled, fSources, &QWidget::setVisible);
  connect(fSources, &SourcesPanel::hiddenChanged, this,
          [this] { fFeed->setHidden(fSources->hidden()); });
  connect(fActions.onTheirFrame, &QAction::toggled, fSources, &SourcesPanel::setOnFrame);
  connect(fSources, &SourcesPanel::onFrameChanged, this, [this](bool on) {
    fActions.onTheirFrame->setChecked(on);
    fFeed->setOnFrame(on);
  });
  connect(fActions.histogram, &QAction::toggled, fCanvas, &StageCanvas::setHistogramShown);
  connect(fActions.pixel, &QAction::toggled, this, &Stage::showPixel);
  connect(fCanvas, &StageCanvas::pointed, this, &Stage::showPixel);
  connect(fCanvas, &StageCanvas::painted, this, &Stage::showPixel);
  connect(fActions.line, &QAction::toggled, fLine, &QWidget::setVisible);
  connect(fActions.toolBar, &QAction::toggled, fToolBar, &QWidget::setVisible);
}

// ---- pictures

void Stage::showChange() {
  const bool isAnother = fFeed->shown().frame != fCanvas->scene().frame();
  fCanvas->setShown(fFeed->shown());
  fSources->follow(fFeed->shown());
  if (isAnother) fKeeper->addToFilm();
}

// While nobody sees it, and nobody will, nothing is done.
void Stage::updateWatched() {
  fPaintedBefore = 0;
  fFeed->setWatched(isVisible() || fKeeper->isFilming());
}

// While nobody looks, and while the view is frozen, nothing is dropped.
void Stage::countDropped() {
  const std::uint64_t painted = fCanvas->scene().frame()->number;
  if (fPaintedBefore != 0 && painted > fPaintedBefore + 1) fDropped += painted - fPaintedBefore - 1;
  fPaintedBefore = painted;
}

void Stage::setPlaying(bool playing) {
  if (fViewer) fViewer->setPlaying(playing);
  refresh();
}

bool Stage::isViewerPlaying() const {
  return fViewer && fViewer->isPlaying();
}

bool Stage::isPlaying() const {
  return isViewerPlaying() && !fFeed->isFrozen();
}

quint64 Stage::framesPainted() const {
  return fCanvas->framesPainted();
}

std::optional<std::chrono::steady_clock::time_point> Stage::lastPainted() const {
  return fCanvas->lastPainted();
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

QSize Stage::sizeHint() const {
  return {720, 560};
}

// ---- keeping

void Stage::connectKeeping() {
  connect(fActions.save, &QAction::triggered, this, [this] { fKeeper->save(true); });
  connect(fActions.savePlain, &QAction::triggered, this, [this] { fKeeper->save(false); });
  connect(fActions.copy, &QAction::triggered, fKeeper, &StageKeeper::copy);
  connect(fActions.film, &QAction::triggered, this, &Stage::filmOrStop);
  connect(fActions.folder, &QAction::triggered, this, [this] { fKeeper->askForFolder(this); });
  connect(fActions.files, &QAction::triggered, this, [this] {
    if (fViewer) emit fViewer->viewWanted("files", false);
  });
  connect(fKeeper, &StageKeeper::said, this, &Stage::say);
  connect(fKeeper, &StageKeeper::filmChanged, this, [this] {
    updateWatched();
    refresh();
  });
}

void Stage::filmOrStop() {
  if (fKeeper->isFilming())
    fKeeper->endFilm();
  else
    fKeeper->beginFilm(frameRateWanted());
  refresh();
}
