// SPDX-License-Identifier: Apache-2.0
#include "window/view_wall.h"

#include <QDockWidget>
#include <QMainWindow>
#include <cmath>

namespace Lookout {

void ViewWall::putUp(const std::vector<QDockWidget*>& shown,
                     const std::vector<QDockWidget*>& others) {
  fBefore = fArea.saveState();
  for (QDockWidget* dock : others) dock->hide();
  arrange(shown);
}

void ViewWall::arrange(const std::vector<QDockWidget*>& docks) {
  for (QDockWidget* dock : docks) {
    fArea.removeDockWidget(dock);
    dock->setFloating(false);
  }
  const auto count = docks.size();
  const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count))));
  QList<QDockWidget*> all, rows;
  QList<int> widths, heights;
  for (std::size_t i = 0; i < count; i += columns) {
    if (i == 0)
      fArea.addDockWidget(Qt::TopDockWidgetArea, docks[i]);
    else
      fArea.splitDockWidget(rows.back(), docks[i], Qt::Vertical);
    rows.append(docks[i]);
    heights.append(fArea.height());
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (i % columns != 0) fArea.splitDockWidget(docks[i - 1], docks[i], Qt::Horizontal);
    docks[i]->show();
    all.append(docks[i]);
    widths.append(fArea.width());
  }
  // The same for each is even.
  fArea.resizeDocks(rows, heights, Qt::Vertical);
  fArea.resizeDocks(all, widths, Qt::Horizontal);
}

void ViewWall::takeDown() {
  if (isUp()) fArea.restoreState(std::exchange(fBefore, {}));
}

QByteArray ViewWall::placesWithoutIt() const {
  return isUp() ? fBefore : fArea.saveState();
}

}  // namespace Lookout
