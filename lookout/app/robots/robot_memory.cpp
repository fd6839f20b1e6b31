// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_memory.h"

#include <QSettings>
#include <QUrl>

namespace Lookout {
namespace {

const char* const kRobotsKey = "Memory/robots";  // the most recent first

// A name may hold slashes, which part the groups of the settings.
QString encoded(const QString& name) {
  return QString::fromLatin1(QUrl::toPercentEncoding(name));
}

QString group(const QString& robot) {
  return "Memory/" + encoded(robot);
}

QString pluginsKey(const QString& robot) {
  return group(robot) + "/plugins";
}

QString picturesKey(const QString& robot) {
  return group(robot) + "/pictures";
}

QString placesKey(const QString& robot) {
  return group(robot) + "/places";
}

QString widgetGroup(const QString& robot, const QString& plugin) {
  return group(robot) + "/widgets/" + encoded(plugin);
}

QString viewsKey(const QString& robot, const QString& plugin) {
  return widgetGroup(robot, plugin) + "/views";
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

QString RobotMemory::pictures(const QString& robot) {
  return QSettings().value(picturesKey(robot)).toString();
}

void RobotMemory::setPictures(const QString& robot, const QString& word) {
  touch(robot);
  QSettings().setValue(picturesKey(robot), word);
}

std::optional<WidgetMemory> RobotMemory::widget(const QString& robot, const QString& plugin) {
  QSettings settings;
  settings.beginGroup(widgetGroup(robot, plugin));
  if (!settings.contains("state")) return {};
  return WidgetMemory{settings.value("state").toByteArray(), settings.value("playing").toBool()};
}

void RobotMemory::setWidget(const QString& robot, const QString& plugin,
                            const WidgetMemory& memory) {
  touch(robot);
  QSettings settings;
  settings.beginGroup(widgetGroup(robot, plugin));
  settings.setValue("state", memory.state);
  settings.setValue("playing", memory.playing);
}

std::vector<ViewMemory> RobotMemory::views(const QString& robot, const QString& plugin) {
  std::vector<ViewMemory> result;
  const QVariantList kept = QSettings().value(viewsKey(robot, plugin)).toList();
  for (const QVariant& one : kept) {
    const QVariantMap view = one.toMap();
    const int number = view["number"].toInt();
    if (const QString kind = view["kind"].toString(); !kind.isEmpty() && number > 0)
      result.push_back({kind, number, view["state"].toByteArray(), view["front"].toBool()});
  }
  return result;
}

void RobotMemory::setViews(const QString& robot, const QString& plugin,
                           const std::vector<ViewMemory>& views) {
  const QString key = viewsKey(robot, plugin);
  if (views.empty()) {
    QSettings().remove(key);
    return;
  }
  touch(robot);
  QVariantList kept;
  for (const ViewMemory& view : views)
    kept << QVariantMap{{"kind", view.kind},
                        {"number", view.number},
                        {"state", view.state},
                        {"front", view.isInFront}};
  QSettings().setValue(key, kept);
}

QByteArray RobotMemory::places(const QString& robot) {
  return QSettings().value(placesKey(robot)).toByteArray();
}

void RobotMemory::setPlaces(const QString& robot, const QByteArray& places) {
  if (places.isEmpty()) {
    QSettings().remove(placesKey(robot));
    return;
  }
  touch(robot);
  QSettings().setValue(placesKey(robot), places);
}

void RobotMemory::forget(const QString& robot) {
  QSettings settings;
  settings.remove(group(robot));
  QStringList robots = settings.value(kRobotsKey).toStringList();
  robots.removeAll(robot);
  settings.setValue(kRobotsKey, robots);
}

}  // namespace Lookout
