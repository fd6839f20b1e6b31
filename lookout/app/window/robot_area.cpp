// SPDX-License-Identifier: Apache-2.0
#include "window/robot_area.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "window/room.h"

namespace Lookout {

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

void RobotArea::add(RobotDock* dock) {
  place(dock);
  fDocks.push_back(dock);
  fCurrent = dock;
  fHint->hide();
  connect(dock, &RobotDock::closed, this, [this, dock] { forget(dock); });
  connect(dock, &RobotDock::visibilityChanged, this, [this, dock](bool isInFront) {
    if (isInFront) fCurrent = dock;
  });
  connect(dock, &RobotDock::widgetShown, this, [this, dock] { makeRoom(*dock); });
  dock->show();
  dock->raise();
  resizeDocks({dock}, {width() / static_cast<int>(fDocks.size())}, Qt::Horizontal);
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

QSize RobotArea::wantedSize(RobotDock& dock) const {
  QSize wanted = dock.wantedSize();
  for (const QDockWidget* tab : tabifiedDockWidgets(&dock))
    if (const auto& other = static_cast<const RobotDock&>(*tab);
        other.session().widget() != nullptr)
      wanted = wanted.expandedTo(other.wantedSize());
  return wanted;
}

void RobotArea::makeRoom(RobotDock& shown) {
  // What was shown before may still be waiting for its layout.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  if (shown.isFloating()) return;
  QList<QDockWidget*> docks;
  QSize missing(0, 0);
  int wantedWidth = 0;
  for (RobotDock* dock : fDocks) {
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
  for (QDockWidget* dock : docks)
    widths.append(wantedSize(static_cast<RobotDock&>(*dock)).width() + spare);
  resizeDocks(docks, widths, Qt::Horizontal);
}

void RobotArea::forget(RobotDock* dock) {
  std::erase(fDocks, dock);
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
  const auto focused = std::find_if(fDocks.begin(), fDocks.end(), [](const RobotDock* dock) {
    return dock->isAncestorOf(QApplication::focusWidget());
  });
  return focused != fDocks.end() ? *focused : fCurrent;
}

void RobotArea::followFocus(const QWidget* focused) {
  for (RobotDock* dock : fDocks)
    if (dock->isAncestorOf(focused)) fCurrent = dock;
}

}  // namespace Lookout
