// SPDX-License-Identifier: Apache-2.0
// The list of the stage's keys.
#pragma once

#include <QDialog>

#include "viewer/stage/stage_actions.h"

// Lists every action with its keys and what it does, and what the mouse does. Closed by Esc or ?.
// GUI thread.
class ShortcutSheet : public QDialog {
  Q_OBJECT

 public:
  ShortcutSheet(const StageActions& actions, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};
