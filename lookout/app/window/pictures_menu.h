// SPDX-License-Identifier: Apache-2.0
// The menu in which the user chooses how a robot's pictures come.
#pragma once

#include <QMenu>

class QActionGroup;

namespace Lookout {

class RobotSession;

// GUI thread.
class PicturesMenu : public QMenu {
  Q_OBJECT

 public:
  explicit PicturesMenu(QWidget* parent = nullptr);

  // Names the session's robot and ticks what is chosen for it. There is nothing to choose without a
  // robot (null), or where it sends no pictures by itself.
  void showFor(const RobotSession* session);

 signals:
  // By the user: one of pictureWords().
  void chosen(const QString& word);

 private:
  QActionGroup* fChoices;
};

}  // namespace Lookout
