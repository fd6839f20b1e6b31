// SPDX-License-Identifier: Apache-2.0
// The further views of what a robot's widget shows.
#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "robots/robot_memory.h"

class QWidget;

namespace Lookout {

class RobotSession;
class ViewDock;

// Opens them, each in a dock of its own, and closes them with their robot. Whoever hears of a new
// one gives it a place. GUI thread.
class RobotViews : public QObject {
  Q_OBJECT

 public:
  // `session` outlives it. `owner` is what the robot's own dock is called.
  RobotViews(RobotSession& session, QString owner);
  // Deletes all docks.
  ~RobotViews() override;

  // The kinds that the robot's widget offers now.
  QStringList kinds() const;
  // In the order in which they were opened, without those that are about to go.
  std::vector<ViewDock*> docks() const;
  // The first that is open of a kind, or null.
  ViewDock* first(const QString& kind) const;
  // Brings one of a kind to the front, or opens the first; where `another`, opens one more. While
  // there is no widget yet it is opened too, and closed again if that turns out not to offer it.
  // Null, and told by refused(), when the widget offers none of the kind.
  ViewDock* open(const QString& kind, bool another);
  ViewDock* open(const QString& kind) { return open(kind, false); }
  // What is open, and the same opened again, as far as the widget offers it.
  std::vector<ViewMemory> memory() const;
  void open(const std::vector<ViewMemory>& before);
  // Follows the title of the robot's own dock.
  void setOwnerTitle(const QString& title);

 signals:
  // A new dock, to be placed.
  void opened(ViewDock* dock);
  // One was closed, and is about to go.
  void closed();
  // There is no such view; in words for the user.
  void refused(const QString& why);

 private:
  ViewDock* add(const QString& kind, int number, const QByteArray& state);
  int freeNumber(const QString& kind) const;
  void refuse(const QString& kind);

  RobotSession& fSession;
  const QString fOwner;
  QString fOwnerTitle;
  std::vector<QPointer<ViewDock>> fDocks;
};

}  // namespace Lookout
