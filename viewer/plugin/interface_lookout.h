// SPDX-License-Identifier: Apache-2.0
// What the host loads: makes a viewer for one robot.
#pragma once

#include <QObject>
#include <string>

#include "ky/ahead.h"
#include "lookout/widget_interface.h"

class Module;

// GUI thread only.
class Interface : public QObject, public WidgetInterface {
  Q_OBJECT
  Q_INTERFACES(WidgetInterface)
  Q_PLUGIN_METADATA(IID LOOKOUT_WIDGET_INTERFACE_IID FILE "periscope.json")

 public:
  // Connects to the robot, starts the subscription to its camera and builds a Widget. Every call
  // makes a module, a model and a widget of its own. A missing video device is no failure; the
  // widget then shows no pictures.
  QWidget* getWidget(QWidget* parent, const std::string& robotIp, int robotPort,
                     const std::string& resourcePath) override;

 private:
  static void subscribe(Module& module, QWidget* parent);
  static void requireRegistered(const Module& module, Ky::KyAhead& ahead);
};
