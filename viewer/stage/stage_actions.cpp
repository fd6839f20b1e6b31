// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_actions.h"

#include <QMenu>
#include <QWidget>

StageActions::StageActions(QWidget& stage) : fStage(stage) {
  begin(tr("Picture"));
  play = add(tr("Play"), {Qt::Key_Space}, tr("Plays and pauses the robot's pictures"));
  freeze = addCheck(tr("Freeze"), {Qt::Key_Z}, tr("Holds this picture here; the rest goes on"));
  another =
      add(tr("Another stage"), {QKeySequence("Shift+S")}, tr("Opens one more view of this robot"));
  fullScreen = addCheck(tr("Full screen"), {Qt::Key_F11}, tr("Fills the screen; Esc leaves it"));

  begin(tr("Looking"));
  fit = add(tr("Fit"), {Qt::Key_F}, tr("Shows the whole picture, as large as there is room"));
  oneToOne = add(tr("1:1"), {Qt::Key_1}, tr("One pixel of the screen for each of the picture"));
  zoomIn = add(tr("Zoom in"), {Qt::Key_Plus, Qt::Key_Equal, QKeySequence("Ctrl++")},
               tr("Enlarges; with the wheel around the pointer"));
  zoomOut = add(tr("Zoom out"), {Qt::Key_Minus, QKeySequence("Ctrl+-")}, tr("Makes it smaller"));
  turnRight = add(tr("Turn right"), {Qt::Key_R}, tr("Turns this view by a quarter, clockwise"));
  turnLeft = add(tr("Turn left"), {QKeySequence("Shift+R")}, tr("Turns it back by a quarter"));
  mirror = addCheck(tr("Mirror"), {Qt::Key_M}, tr("Swaps left and right in this view"));

  begin(tr("Measuring"));
  overlays = addCheck(tr("Overlays"), {Qt::Key_O}, tr("What detectors and programs draw"), true);
  sources = addCheck(tr("Sources"), {Qt::Key_L}, tr("Lists what is drawn, to hide some of it"));
  onTheirFrame = addCheck(tr("Detections on their frame"), {Qt::Key_D},
                          tr("Holds the picture back until its detections are there"), true);
  grid = addCheck(tr("Grid"), {Qt::Key_G}, tr("Tenths of the picture, and its pixels when large"));
  pixel = addCheck(tr("Pixel"), {Qt::Key_I}, tr("Says what the pixel under the pointer is"));
  histogram = addCheck(tr("Histogram"), {Qt::Key_H}, tr("How bright the picture is"));
  line = addCheck(tr("Status line"), {Qt::Key_B}, tr("Rate, age, size, encoding"), true);
  toolBar = addCheck(tr("Tool bar"), {Qt::Key_T}, tr("The buttons above the picture"), true);

  begin(tr("Keeping"));
  save = add(tr("Save picture"), {QKeySequence("Ctrl+S")},
             tr("Saves what is seen as PNG, without asking"));
  savePlain = add(tr("Save without overlays"), {QKeySequence("Ctrl+Shift+S")},
                  tr("Saves the picture alone as PNG"));
  copy = add(tr("Copy"), {QKeySequence("Ctrl+C")}, tr("Puts what is seen on the clipboard"));
  film = add(tr("Film"), {QKeySequence("Ctrl+R")}, tr("Films what is seen on this computer"));
  folder = add(tr("Folder..."), {QKeySequence("Ctrl+Shift+O")},
               tr("Where pictures and films are saved"));
  files = add(tr("Files on the robot"), {QKeySequence("Shift+F")},
              tr("The photos and films that the robot has taken"));

  begin(tr("Help"));
  help = add(tr("Shortcuts"), {Qt::Key_Question, Qt::Key_F1}, tr("This list"));
}

QAction* StageActions::add(const QString& text, const QList<QKeySequence>& keys,
                           const QString& what) {
  auto* action = new QAction(text, &fStage);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  action->setStatusTip(what);
  action->setToolTip(QString("%1 (%2)").arg(what, keys.first().toString(QKeySequence::NativeText)));
  fStage.addAction(action);
  fGroups.back().actions << action;
  return action;
}

QAction* StageActions::addCheck(const QString& text, const QList<QKeySequence>& keys,
                                const QString& what, bool checked) {
  QAction* action = add(text, keys, what);
  action->setCheckable(true);
  action->setChecked(checked);
  return action;
}

void StageActions::fill(QMenu& menu) const {
  for (const Group& group : fGroups) {
    if (!menu.isEmpty()) menu.addSeparator();
    menu.addActions(group.actions);
  }
}
