// SPDX-License-Identifier: Apache-2.0
// What the stage does with keys, and when it is shown.
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <optional>

#include "viewer/stage/shortcut_sheet.h"
#include "viewer/stage/stage.h"
#include "viewer/stage/stage_canvas.h"

namespace {

constexpr double kPanStep = 0.1;  // of the view

// Which way an arrow key points; nothing for other keys.
std::optional<QPoint> arrowOf(int key) {
  switch (key) {
    case Qt::Key_Left:
      return QPoint(-1, 0);
    case Qt::Key_Right:
      return QPoint(1, 0);
    case Qt::Key_Up:
      return QPoint(0, -1);
    case Qt::Key_Down:
      return QPoint(0, 1);
    default:
      return std::nullopt;
  }
}

}  // namespace

// Neither this nor the menu is waited for: the stage may go while they are open.
void Stage::showShortcuts() {
  if (fSheet) {
    fSheet->close();
    return;
  }
  fSheet = new ShortcutSheet(fActions, this);
  fSheet->setAttribute(Qt::WA_DeleteOnClose);
  fSheet->open();
}

// Space ticks a source off; it plays and pauses elsewhere.
bool Stage::eventFilter(QObject* watched, QEvent* event) {
  const bool isSpace = event->type() == QEvent::ShortcutOverride &&
                       static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
  if (isSpace) event->accept();
  return isSpace || LookoutWidget::eventFilter(watched, event);
}

void Stage::keyPressEvent(QKeyEvent* event) {
  const auto arrow = arrowOf(event->key());
  if (arrow && event->modifiers().testFlag(Qt::ControlModifier))
    fCanvas->movePointed(*arrow);
  else if (arrow)
    fCanvas->panBy(arrow->x() * kPanStep, arrow->y() * kPanStep);
  else if (event->key() == Qt::Key_Escape && window()->isFullScreen())
    emit fullScreenWanted(false);
  else
    LookoutWidget::keyPressEvent(event);
}

void Stage::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  fActions.fill(*menu);
  menu->popup(event->globalPos());
}

void Stage::showEvent(QShowEvent*) {
  updateWatched();
  refresh();
}

void Stage::hideEvent(QHideEvent*) {
  updateWatched();
}

void Stage::changeEvent(QEvent* event) {
  LookoutWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) refresh();
}

void Stage::resizeEvent(QResizeEvent*) {
  placeLabels();
}
