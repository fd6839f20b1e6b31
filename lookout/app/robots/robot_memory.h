// SPDX-License-Identifier: Apache-2.0
// How a robot was shown last time, kept in the settings.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <optional>

namespace Lookout {

// What a widget hands over to the next one of its plug-in for its robot.
struct WidgetMemory {
  QByteArray state;  // see LookoutWidget::saveState()
  bool playing = false;

  bool operator==(const WidgetMemory&) const = default;
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
  static void forget(const QString& robot);
};

}  // namespace Lookout
