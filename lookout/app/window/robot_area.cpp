// SPDX-License-Identifier: Apache-2.0
#include "window/robot_area.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "robots/robot_views.h"
#include "window/room.h"

namespace Lookout {
namespace {

// What a view likes to have, at least.
constexpr int kViewWidth = 640;
const QString kStage = "stage";

// Null for a dock without its widget.
QSize sizeWantedBy(const QDockWidget& dock) {
  const auto* robot = qobject_cast<const RobotDock*>(&dock);
  if (robot == nullptr) return dock.size();
  return robot->session().widget() != nullptr ? robot->wantedSize() : QSize(0, 0);
}

}  // namespace

RobotArea::RobotArea(QWidget* parent) : QMainWindow(parent) {
  setWindowFlags(Qt::Widget);  // a main window makes itself a window
  setDockOptions(AllowNestedDocks | AllowTabbedDocks);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  buildHint();
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, const QWidget* focused) { followFocus(focused); });
}

RobotArea::~RobotArea() {
  qApp->disconnect(this);
  for (RobotDock* dock : fDocks) {
    dock->disconnect(this);
    delete dock;
  }
}

void RobotArea::buildHint() {
  fHint = new QWidget(this);
  fHintText = new QLabel(fHint);
  fHintText->setTextFormat(Qt::PlainText);
  fHintText->setAlignment(Qt::AlignCenter);
  fHintText->setWordWrap(true);
  auto* button = new QPushButton(tr("Connect to a robot..."), fHint);
  button->setDefault(true);
  connect(button, &QPushButton::clicked, this, &RobotArea::connectRequested);
  auto* layout = new QVBoxLayout(fHint);
  layout->addStretch(1);
  layout->addWidget(fHintText);
  layout->addSpacing(12);
  layout->addWidget(button, 0, Qt::AlignHCenter);
  layout->addStretch(1);
  setCentralWidget(fHint);
}

void RobotArea::setHint(const QString& text) {
  fHintText->setText(text);
}

void RobotArea::add(RobotDock* dock, const QByteArray& places) {
  const bool wasWall = isWall();
  takeDownWall();
  if (fDocks.empty() && !places.isEmpty()) restoreState(places);
  // Its place may have been there before it, or have come with the others'.
  const bool isBack = restoreDockWidget(dock) || dockWidgetArea(dock) != Qt::NoDockWidgetArea;
  if (!isBack) place(dock);
  fDocks.push_back(dock);
  fCurrent = dock;
  fHint->hide();
  connect(dock, &RobotDock::closed, this, [this, dock] { forget(dock); });
  connect(dock, &RobotDock::visibilityChanged, this, [this, dock](bool isInFront) {
    if (isInFront) fCurrent = dock;
  });
  connect(dock, &RobotDock::widgetShown, this, [this, dock, isBack](bool isFirst) {
    if (!isBack && (isFirst || views().empty())) makeRoom(*dock);  // or else all stays as it is
  });
  connect(&dock->views(), &RobotViews::opened, this,
          [this, dock](ViewDock* view) { addView(dock, view); });
  connect(&dock->views(), &RobotViews::closed, this, &RobotArea::renewWall, Qt::QueuedConnection);
  connect(&dock->views(), &RobotViews::refused, this, &RobotArea::refused);
  connect(&dock->session(), &RobotSession::notChosen, this,
          [this, dock](const QString& why) { emit refused(tr("%1: %2").arg(dock->name(), why)); });
  dock->show();
  if (!isBack) {
    dock->raise();
    resizeDocks({dock}, {width() / static_cast<int>(fDocks.size())}, Qt::Horizontal);
  }
  if (wasWall) putUpWall();
  emit changed();
  dock->session().start();
}

void RobotArea::place(RobotDock* dock) {
  RobotDock* neighbour = nullptr;
  for (RobotDock* other : fDocks)
    if (!other->isFloating()) neighbour = other;
  if (neighbour == nullptr)
    addDockWidget(Qt::TopDockWidgetArea, dock);
  else if (hasRoomBeside(*window(), *neighbour))
    splitDockWidget(neighbour, dock, Qt::Horizontal);
  else
    tabifyDockWidget(neighbour, dock);
}

void RobotArea::addView(RobotDock* robot, ViewDock* view) {
  const bool wasWall = isWall();
  takeDownWall();
  const bool isBack = restoreDockWidget(view);
  if (!isBack) placeView(robot, view);
  connect(view, &ViewDock::visibilityChanged, this, [this, robot, view](bool isInFront) {
    if (!isInFront) return;
    fCurrent = robot;
    fCurrentView = view;
  });
  view->show();
  // What was in front last time is raised when all are there.
  (isBack ? static_cast<QDockWidget*>(robot) : view)->raise();
  if (wasWall) putUpWall();
}

// Beside the newest view of its robot, or the robot itself.
void RobotArea::placeView(RobotDock* robot, ViewDock* view) {
  QDockWidget* neighbour = robot->isFloating() ? nullptr : robot;
  for (ViewDock* other : robot->views().docks())
    if (other != view && !other->isFloating()) neighbour = other;
  if (neighbour == nullptr) {
    addDockWidget(Qt::TopDockWidgetArea, view);
  } else if (const auto growth = growthFor(*neighbour)) {
    QList<QDockWidget*> row;
    QList<int> widths;
    for (QDockWidget* dock : docksInSight()) {
      row << dock;
      widths << (dock == neighbour ? dock->width() + *growth - kViewWidth : dock->width());
    }
    if (*growth > 0) emit roomWanted({*growth, 0});
    splitDockWidget(neighbour, view, Qt::Horizontal);
    resizeDocks(row << view, widths << kViewWidth, Qt::Horizontal);
  } else {
    tabifyDockWidget(neighbour, view);
  }
}

std::optional<int> RobotArea::growthFor(QDockWidget& neighbour) const {
  if (!tabifiedDockWidgets(&neighbour).isEmpty()) return {};
  const bool isView = qobject_cast<ViewDock*>(&neighbour) != nullptr;
  const int kept = isView ? kViewWidth : wantedSize(neighbour).width();
  const int missing = std::max(0, kViewWidth + kept - neighbour.width());
  if (missing > std::max(0, roomToGrow(*window()).width())) return {};
  return missing;
}

QSize RobotArea::wantedSize(QDockWidget& dock) const {
  QSize wanted = sizeWantedBy(dock);
  if (wanted.isEmpty()) wanted = dock.size();
  for (const QDockWidget* tab : tabifiedDockWidgets(&dock))
    if (qobject_cast<const RobotDock*>(tab) != nullptr)
      wanted = wanted.expandedTo(sizeWantedBy(*tab));
  return wanted;
}

std::vector<QDockWidget*> RobotArea::docksInSight() const {
  std::vector<QDockWidget*> all(fDocks.begin(), fDocks.end());
  for (ViewDock* view : views()) all.push_back(view);
  std::erase_if(all, [](const QDockWidget* dock) {
    return dock->isFloating() || dock->visibleRegion().isEmpty();
  });
  return all;
}

std::vector<ViewDock*> RobotArea::views() const {
  std::vector<ViewDock*> result;
  for (const RobotDock* dock : fDocks)
    for (ViewDock* view : dock->views().docks()) result.push_back(view);
  return result;
}

void RobotArea::makeRoom(RobotDock& shown) {
  if (isWall()) return;
  // What was shown before may still be waiting for its layout.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  if (shown.isFloating()) return;
  std::vector<QDockWidget*> all(fDocks.begin(), fDocks.end());
  for (ViewDock* view : views()) all.push_back(view);
  QList<QDockWidget*> docks;
  QSize missing(0, 0);
  int wantedWidth = 0;
  for (QDockWidget* dock : all) {
    const bool standsAlone = !dock->isFloating() && tabifiedDockWidgets(dock).isEmpty();
    if (dock != &shown && !standsAlone) continue;
    docks.append(dock);
    const QSize wanted = wantedSize(*dock);
    const QSize more = (wanted - dock->size()).expandedTo({0, 0});
    missing = QSize(missing.width() + more.width(), std::max(missing.height(), more.height()));
    wantedWidth += wanted.width();
  }
  if (missing == QSize(0, 0)) return;
  emit roomWanted(missing);
  // What nobody needs is shared evenly.
  const int spare = (width() - wantedWidth) / static_cast<int>(docks.size());
  QList<int> widths;
  for (QDockWidget* dock : docks) widths.append(wantedSize(*dock).width() + spare);
  resizeDocks(docks, widths, Qt::Horizontal);
}

// ---- the wall

bool RobotArea::canHaveWall() const {
  return std::any_of(fDocks.begin(), fDocks.end(), [](const RobotDock* dock) {
    return dock->views().first(kStage) != nullptr || dock->views().kinds().contains(kStage);
  });
}

void RobotArea::setWall(bool up) {
  takeDownWall();
  if (!up) return;
  for (const RobotDock* dock : fDocks)
    if (dock->views().first(kStage) == nullptr && dock->views().kinds().contains(kStage))
      dock->views().open(kStage);
  putUpWall();
}

void RobotArea::putUpWall() {
  std::vector<QDockWidget*> stages;
  std::vector<QDockWidget*> others(fDocks.begin(), fDocks.end());
  for (ViewDock* view : views()) (view->kind() == kStage ? stages : others).push_back(view);
  if (!stages.empty()) fWall.putUp(stages, others);
}

// What was closed meanwhile, and has not gone yet, stays out of sight.
void RobotArea::takeDownWall() {
  fWall.takeDown();
  for (RobotDock* dock : findChildren<RobotDock*>())
    if (dock->session().state() == RobotSession::State::Closed) dock->hide();
  for (ViewDock* view : findChildren<ViewDock*>())
    if (view->isClosing()) view->hide();
}

void RobotArea::renewWall() {
  if (!isWall()) return;
  takeDownWall();
  putUpWall();
}

void RobotArea::forget(RobotDock* dock) {
  std::erase(fDocks, dock);
  renewWall();
  if (fCurrent == dock) fCurrent = fDocks.empty() ? nullptr : fDocks.back();
  fHint->setVisible(fDocks.empty());
  emit changed();
}

std::vector<RobotDock*> RobotArea::docksOf(const QString& robotName) const {
  std::vector<RobotDock*> result;
  for (RobotDock* dock : fDocks)
    if (dock->robotName() == robotName && dock->session().state() != RobotSession::State::Closed)
      result.push_back(dock);
  return result;
}

RobotDock* RobotArea::current() const {
  for (RobotDock* dock : fDocks) {
    if (dock->isAncestorOf(QApplication::focusWidget())) return dock;
    for (const ViewDock* view : dock->views().docks())
      if (view->holdsFocus()) return dock;
  }
  return fCurrent;
}

ViewDock* RobotArea::currentView() const {
  const RobotDock* robot = current();
  if (robot == nullptr) return nullptr;
  const std::vector<ViewDock*> all = robot->views().docks();
  for (ViewDock* view : all)
    if (view->holdsFocus()) return view;
  if (std::find(all.begin(), all.end(), fCurrentView) != all.end()) return fCurrentView;
  return all.empty() ? nullptr : all.back();
}

void RobotArea::followFocus(const QWidget* focused) {
  for (RobotDock* dock : fDocks) {
    if (dock->isAncestorOf(focused)) fCurrent = dock;
    for (ViewDock* view : dock->views().docks()) {
      if (!view->holdsFocus()) continue;
      fCurrent = dock;
      fCurrentView = view;
    }
  }
}

}  // namespace Lookout
