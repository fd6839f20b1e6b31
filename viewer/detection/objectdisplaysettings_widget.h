// SPDX-License-Identifier: Apache-2.0
// The place for settings of the custom objects' display.
#pragma once

#include <QWidget>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

class Module;

// Reserved: without controls as yet. GUI thread.
class ObjectDisplaySettingsWidget : public QWidget {
 public:
  ObjectDisplaySettingsWidget(boost::shared_ptr<Module> module, QWidget* parent);

 private:
  boost::weak_ptr<Module> fModule;
};
