// SPDX-License-Identifier: Apache-2.0
// All that can be done on the stage, by menu, tool bar and keys.
#pragma once

#include <QAction>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <vector>

class QMenu;
class QWidget;

// The actions belong to the widget, and their keys work in it and in its children. What they do is
// connected by whoever makes them. GUI thread.
class StageActions {
  Q_DECLARE_TR_FUNCTIONS(StageActions)

 public:
  explicit StageActions(QWidget& stage);

  // The actions of one concern, in the order in which they are shown.
  struct Group {
    QString title;
    QList<QAction*> actions;
  };
  const std::vector<Group>& groups() const { return fGroups; }
  // All of them, with separators between the groups.
  void fill(QMenu& menu) const;

  // Picture
  QAction* play = nullptr;    // its text says whether it plays or pauses
  QAction* freeze = nullptr;  // checkable
  QAction* another = nullptr;
  // Looking
  QAction* fit = nullptr;
  QAction* oneToOne = nullptr;
  QAction* zoomIn = nullptr;
  QAction* zoomOut = nullptr;
  QAction* turnRight = nullptr;
  QAction* turnLeft = nullptr;
  QAction* mirror = nullptr;  // checkable
  QAction* fullScreen = nullptr;
  // Measuring; all checkable
  QAction* overlays = nullptr;
  QAction* sources = nullptr;
  QAction* onTheirFrame = nullptr;
  QAction* grid = nullptr;
  QAction* pixel = nullptr;
  QAction* histogram = nullptr;
  QAction* line = nullptr;
  QAction* toolBar = nullptr;
  // Keeping
  QAction* save = nullptr;
  QAction* savePlain = nullptr;
  QAction* copy = nullptr;
  QAction* film = nullptr;  // as play
  QAction* folder = nullptr;
  QAction* files = nullptr;
  QAction* help = nullptr;

 private:
  QAction* add(const QString& text, const QList<QKeySequence>& keys, const QString& what);
  QAction* addCheck(const QString& text, const QList<QKeySequence>& keys, const QString& what,
                    bool checked = false);
  void begin(const QString& title) { fGroups.push_back({title, {}}); }

  QWidget& fStage;
  std::vector<Group> fGroups;
};
