// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_memory.h"

#include <QSettings>
#include <QUrl>

namespace Lookout {
namespace {

const char* const kRobotsKey = "Memory/robots";  // the most recent first

// A name may hold slashes, which part the groups of the settings.
QString group(const QString& robot) {
  return "Memory/" + QString::fromLatin1(QUrl::toPercentEncoding(robot));
}

QString pluginsKey(const QString& robot) {
  return group(robot) + "/plugins";
}

void touch(const QString& robot) {
  QSettings settings;
  QStringList robots = settings.value(kRobotsKey).toStringList();
  robots.removeAll(robot);
  robots.prepend(robot);
  for (const QString& old : robots.mid(RobotMemory::kMost)) settings.remove(group(old));
  settings.setValue(kRobotsKey, robots.mid(0, RobotMemory::kMost));
}

}  // namespace

QStringList RobotMemory::plugins(const QString& robot) {
  return QSettings().value(pluginsKey(robot)).toStringList();
}

void RobotMemory::setPlugins(const QString& robot, const QStringList& plugins) {
  touch(robot);
  QSettings().setValue(pluginsKey(robot), plugins);
}

void RobotMemory::forget(const QString& robot) {
  QSettings settings;
  settings.remove(group(robot));
  QStringList robots = settings.value(kRobotsKey).toStringList();
  robots.removeAll(robot);
  settings.setValue(kRobotsKey, robots);
}

}  // namespace Lookout
