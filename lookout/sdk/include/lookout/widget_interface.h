// SPDX-License-Identifier: Apache-2.0
// What a Lookout plug-in exports: an object that makes a widget for one robot.
#pragma once

#include <QtPlugin>
#include <boost/shared_ptr.hpp>
#include <string>

#include "ky/broker.h"

class QWidget;

// The host loads the plug-in, casts its root object to WidgetInterface and calls getWidget() once a
// robot; every call makes a new, independent widget. GUI thread only.
//
// The host speaks the user's language, and so can a plug-in: put its texts through tr() and
// NAME_LANGUAGE.qm, my_plugin_de.qm say, beside the library or into the host's folder
// share/lookout/translations. The host installs it before getWidget() is called for the first time.
//
// Lifetime: broker() and widget() are those of the latest getWidget() call. The host owns the
// widget, and ends a robot in this order: delete the widget, then shut the broker down.
class WidgetInterface {
 public:
  virtual ~WidgetInterface();

  // Connects to the robot and builds its widget. resourcePath is the host's folder of icon files
  // and ends with a slash. Throws Ky::KyError when the robot can't be reached.
  virtual QWidget* getWidget(QWidget* parent, const std::string& robotIp, int robotPort,
                             const std::string& resourcePath) = 0;

  // Whether getWidget() needs a robot's address.
  virtual bool requiresConnection() const { return true; }

  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fBroker; }
  QWidget* widget() const { return fWidget; }

 protected:
  // Opens a broker that is a peer of the robot's and puts it into `broker`. Blocks for at most the
  // broker's connect time, 2 s; not at all when the host has a connection of this name already
  // (lookout/broker_loan.h), which it has when the plug-in's metadata names the broker:
  // Q_PLUGIN_METADATA(IID .. FILE "my.json") with { "brokerName": "MyBroker" }. resourcePath is
  // not used yet. Throws Ky::KyError, and leaves `broker` as it was, when the robot can't be
  // reached.
  void initBroker(boost::shared_ptr<Ky::KyBroker>& broker, const std::string& brokerName,
                  const std::string& robotIp, int robotPort, const std::string& resourcePath);

  boost::shared_ptr<Ky::KyBroker> fBroker;
  QWidget* fWidget = nullptr;
};

#define LOOKOUT_WIDGET_INTERFACE_IID "com.korvane.lookout.WidgetInterface/0.1"
Q_DECLARE_INTERFACE(WidgetInterface, LOOKOUT_WIDGET_INTERFACE_IID)
