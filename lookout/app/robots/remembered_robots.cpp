// SPDX-License-Identifier: Apache-2.0
#include "robots/remembered_robots.h"

#include <QSettings>

#include "robots/robot_memory.h"

namespace Lookout {
namespace {

const char* const kKey = "Robots/remembered";
// A list of its own, so that the other one stays what it was before there was this choice.
const char* const kUnencryptedKey = "Robots/unencrypted";

QStringList unencryptedRobots() {
  return QSettings().value(kUnencryptedKey).toStringList();
}

void store(const QStringList& robots, QStringList unencrypted) {
  unencrypted.removeIf([&](const QString& robot) { return !robots.contains(robot); });
  QSettings settings;
  settings.setValue(kKey, robots);
  settings.setValue(kUnencryptedKey, unencrypted);
}

}  // namespace

QStringList RememberedRobots::all() {
  return QSettings().value(kKey).toStringList();
}

bool RememberedRobots::isUnencrypted(const QString& robot) {
  return unencryptedRobots().contains(robot);
}

void RememberedRobots::remember(const QString& robot, bool unencrypted) {
  QStringList robots = all();
  robots.removeAll(robot);
  robots.prepend(robot);
  QStringList plain = unencryptedRobots();
  plain.removeAll(robot);
  if (unencrypted) plain.append(robot);
  store(robots.mid(0, kMost), plain);
}

void RememberedRobots::forget(const QString& robot) {
  QStringList robots = all();
  robots.removeAll(robot);
  store(robots, unencryptedRobots());
  RobotMemory::forget(robot);
}

}  // namespace Lookout
