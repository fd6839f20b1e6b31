// SPDX-License-Identifier: Apache-2.0
// How a robot was shown last time, kept in the settings.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <optional>
#include <vector>

namespace Lookout {

// What a widget hands over to the next one of its plug-in for its robot.
struct WidgetMemory {
  QByteArray state;  // see LookoutWidget::saveState()
  bool playing = false;

  bool operator==(const WidgetMemory&) const = default;
};

// A further view of what a widget shows.
struct ViewMemory {
  QString kind;  // see LookoutWidget::viewKinds()
  int number = 1;
  QByteArray state;
  bool isInFront = true;  // of the tabs that it is in, if any

  bool operator==(const ViewMemory&) const = default;
};

// Of the robots "HOST:PORT" that were docked last, at most 20. GUI thread; reads and writes the
// application's QSettings at each call.
class RobotMemory {
 public:
  static constexpr int kMost = 20;

  // The names of the plug-ins that were open for it; empty when nothing is remembered.
  static QStringList plugins(const QString& robot);
  static void setPlugins(const QString& robot, const QStringList& plugins);
  // How its pictures were to come; empty when nothing is remembered.
  static QString pictures(const QString& robot);
  static void setPictures(const QString& robot, const QString& word);
  static std::optional<WidgetMemory> widget(const QString& robot, const QString& plugin);
  static void setWidget(const QString& robot, const QString& plugin, const WidgetMemory& memory);
  // The views that were open, in their order. Setting none where none were changes nothing.
  static std::vector<ViewMemory> views(const QString& robot, const QString& plugin);
  static void setViews(const QString& robot, const QString& plugin,
                       const std::vector<ViewMemory>& views);
  // Where everything stood, for QMainWindow::restoreState(); empty when nothing is remembered.
  // Setting nothing where there was nothing changes nothing.
  static QByteArray places(const QString& robot);
  static void setPlaces(const QString& robot, const QByteArray& places);
  static void forget(const QString& robot);
};

}  // namespace Lookout
