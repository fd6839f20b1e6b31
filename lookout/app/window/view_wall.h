// SPDX-License-Identifier: Apache-2.0
// Docks side by side in a grid, instead of all others.
#pragma once

#include <QByteArray>
#include <vector>

class QDockWidget;
class QMainWindow;

namespace Lookout {

// GUI thread.
class ViewWall {
 public:
  // `area` outlives it.
  explicit ViewWall(QMainWindow& area) : fArea(area) {}

  bool isUp() const { return !fBefore.isEmpty(); }
  // Puts the docks `shown`, of which there is at least one, into a grid, and hides `others`. It is
  // not up yet.
  void putUp(const std::vector<QDockWidget*>& shown, const std::vector<QDockWidget*>& others);
  // Everything that is still there goes back to where it was.
  void takeDown();
  // Where everything stands without the wall, as QMainWindow::saveState() has it.
  QByteArray placesWithoutIt() const;

 private:
  void arrange(const std::vector<QDockWidget*>& docks);

  QMainWindow& fArea;
  QByteArray fBefore;  // empty while it is not up
};

}  // namespace Lookout
