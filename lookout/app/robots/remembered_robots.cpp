// SPDX-License-Identifier: Apache-2.0
#include "robots/remembered_robots.h"

#include <QSettings>

namespace Lookout {
namespace {

const char* const kKey = "Robots/remembered";

}  // namespace

QStringList RememberedRobots::all() {
  return QSettings().value(kKey).toStringList();
}

void RememberedRobots::remember(const QString& robot) {
  QStringList robots = all();
  robots.removeAll(robot);
  robots.prepend(robot);
  QSettings().setValue(kKey, QStringList(robots.mid(0, kMost)));
}

void RememberedRobots::forget(const QString& robot) {
  QStringList robots = all();
  robots.removeAll(robot);
  QSettings().setValue(kKey, robots);
}

}  // namespace Lookout
