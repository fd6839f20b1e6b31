// SPDX-License-Identifier: Apache-2.0
#include "robots/view_dock.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "ky/meanwhile.h"
#include "robots/full_screen.h"
#include "robots/lost_veil.h"
#include "robots/open_dialogs.h"
#include "robots/status_line.h"
#include "robots/view_kind.h"
#include "zu/log.h"

namespace Lookout {
namespace {

using State = RobotSession::State;

constexpr int kWaitCheckMs = 50;

QLabel* newPlaceholder(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ViewDock::ViewDock(RobotSession& session, const QString& owner, QString kind, int number,
                   QByteArray state, QWidget* parent)
    : QDockWidget(parent),
      fSession(session),
      fKind(std::move(kind)),
      fNumber(number),
      fOwnerTitle(owner),
      fState(std::move(state)) {
  setObjectName(QString("view %1 %2 %3").arg(owner, fKind).arg(fNumber));
  buildPlace();
  connect(&fSession, &RobotSession::widgetMade, this, &ViewDock::makeView);
  connect(&fSession, &RobotSession::widgetGoing, this, &ViewDock::losePicture);
  connect(&fSession, &RobotSession::changed, this, &ViewDock::showState);
  showState();
}

// The picture's veil goes before the picture, and the view before the dock.
ViewDock::~ViewDock() {
  fPicture.reset();
  delete fView.data();
  delete fBody.data();
}

void ViewDock::buildPlace() {
  fPlace = new QStackedWidget(this);
  fBody = new QStackedWidget(fPlace);
  fPlaceholder = newPlaceholder(fBody);
  fBody->addWidget(fPlaceholder);
  fVeil = new LostVeil(fBody);

  fElsewhere = new QWidget(fPlace);
  auto* text = newPlaceholder(fElsewhere);
  text->setText(tr("This view fills the screen."));
  auto* back = new QPushButton(tr("Bring it &back"), fElsewhere);
  connect(back, &QPushButton::clicked, this, [this] { setFillsScreen(false); });
  auto* layout = new QVBoxLayout(fElsewhere);
  layout->addStretch(1);
  layout->addWidget(text);
  layout->addWidget(back, 0, Qt::AlignHCenter);
  layout->addStretch(1);

  fPlace->addWidget(fElsewhere);
  fPlace->addWidget(fBody);
  fPlace->setCurrentWidget(fBody);
  setWidget(fPlace);
}

// ---- the view

void ViewDock::makeView() {
  if (isClosing() || fView || fSession.widget() == nullptr) return;
  if (Ky::KyMeanwhile::isAtWork()) {
    QTimer::singleShot(kWaitCheckMs, this, &ViewDock::makeView);
    return;
  }
  if (LookoutWidget* view = fSession.makeView(fKind, *fBody)) {
    meet(*view);
  } else {
    emit notOffered();
    close();
  }
}

void ViewDock::meet(LookoutWidget& view) {
  fView = &view;
  if (!fState.isEmpty() && !view.restoreState(fState))
    zu::log::warning("lookout", "view")
        << windowTitle().toStdString() << ": it can't take up what was set before";
  fPicture = std::make_unique<PictureWatch>(fSession, view);
  // Not in the middle of the view's own events.
  connect(&view, &LookoutWidget::fullScreenWanted, this, &ViewDock::setFillsScreen,
          Qt::QueuedConnection);
  connect(&view, &LookoutWidget::closeWanted, this, &QWidget::close, Qt::QueuedConnection);
  connect(&view, &LookoutWidget::viewWanted, this, &ViewDock::viewWanted);
  connect(&view, &QWidget::windowTitleChanged, this, &ViewDock::showTitle);
  const bool hadFocus = holdsFocus();
  fBody->addWidget(&view);
  fBody->setCurrentWidget(&view);
  if (hadFocus || fScreen) view.setFocus();
  showState();
}

// The session deletes the view next.
void ViewDock::losePicture() {
  fPicture.reset();
  if (!fView) return;
  fState = fView->saveState();
  fFramesBefore = framesPainted();
  fView = nullptr;
  fBody->setCurrentWidget(fPlaceholder);
}

bool ViewDock::isClosing() const {
  return fIsClosing || fSession.state() == State::Closed;
}

QByteArray ViewDock::viewState() const {
  return fView ? fView->saveState() : fState;
}

quint64 ViewDock::framesPainted() const {
  return fFramesBefore + (fView ? fView->framesPainted() : 0);
}

const PictureReading& ViewDock::reading() const {
  static const PictureReading kNone;
  return fPicture ? fPicture->reading() : kNone;
}

QString ViewDock::problem() const {
  return fPicture ? fPicture->problem() : QString();
}

// ---- what is shown

void ViewDock::setOwnerTitle(const QString& title) {
  fOwnerTitle = title;
  showTitle();
}

void ViewDock::showTitle() {
  const QString own = fView ? fView->windowTitle() : QString();
  const QString name = own.isEmpty() ? viewKind(fKind).name : own;
  const QString numbered = fNumber > 1 ? tr("%1 %2").arg(name).arg(fNumber) : name;
  setWindowTitle(tr("%1 - %2").arg(numbered, fOwnerTitle));
  setAccessibleName(windowTitle());
  if (fScreen) fScreen->setWindowTitle(windowTitle());
}

void ViewDock::showState() {
  const State state = fSession.state();
  if (state == State::Closed) {
    setFillsScreen(false);
    hide();
  }
  const auto& robot = fSession.robot();
  const QString doing =
      robot ? tr("Connecting to %1...").arg(QString::fromStdString(robot->toString())) : QString();
  fPlaceholder->setText(fSession.problem().isEmpty() ? doing : doing + "\n\n" + fSession.problem());
  fVeil->setText(lossText(state, fSession.problem()));
  showTitle();
}

void ViewDock::setFillsScreen(bool fills) {
  if (fills == fillsScreen() || (fills && isClosing())) return;
  if (fills) {
    fPlace->setCurrentWidget(fElsewhere);
    fScreen = std::make_unique<FullScreen>(*fBody, *screen(), windowTitle());
    connect(
        fScreen.get(), &FullScreen::leaveWanted, this, [this] { setFillsScreen(false); },
        Qt::QueuedConnection);
  } else {
    fPlace->addWidget(fBody);
    fPlace->setCurrentWidget(fBody);
    fScreen.reset();
  }
  if (!isClosing() && isVisible()) bringToFront();
}

void ViewDock::bringToFront() {
  show();
  raise();
  QWidget* window = fScreen ? fScreen.get() : this->window();
  if (isFloating() || fScreen) window->raise();
  window->activateWindow();
  (fView ? static_cast<QWidget*>(fView) : fBody)->setFocus();
}

bool ViewDock::holdsFocus() const {
  const QWidget* focused = QApplication::focusWidget();
  return isAncestorOf(focused) || (fScreen && fScreen->isAncestorOf(focused));
}

// ---- its end

void ViewDock::closeEvent(QCloseEvent* event) {
  event->accept();
  if (std::exchange(fIsClosing, true)) return;
  setFillsScreen(false);
  emit closed();
  removeWhenIdle();
}

// Something of the view's may be what waits for the robot, or for the user.
void ViewDock::removeWhenIdle() {
  if (Ky::KyMeanwhile::isAtWork() || (fView && hasOpenDialog(*fView)))
    QTimer::singleShot(kWaitCheckMs, this, &ViewDock::removeWhenIdle);
  else
    deleteLater();
}

}  // namespace Lookout
