// SPDX-License-Identifier: Apache-2.0
#include "viewer/plugin/interface_lookout.h"

#include <QMessageBox>
#include <QString>

#include "ky/error.h"
#include "viewer/core/module.h"
#include "viewer/view/widget.h"

QWidget* Interface::getWidget(QWidget* parent, const std::string& robotIp, int robotPort,
                              const std::string& resourcePath) {
  initBroker(fBroker, "PeriscopeBroker", robotIp, robotPort, resourcePath);
  Ky::KyAhead ahead(fBroker, Widget::reads(), {Ky::KyWrite::registration()});
  const auto module = Ky::KyModule::createModule<Module>(fBroker);
  subscribe(*module, parent);
  requireRegistered(*module, ahead);
  auto* widget = new Widget(module, QString::fromLatin1(resourcePath.c_str()),
                            QString::fromLatin1(robotIp.c_str()), parent);
  fWidget = widget;
  module->setGui(widget);
  return widget;
}

// The module catches and logs what the robot refuses; an error that comes out of it all the same
// must not cost the user the widget.
void Interface::subscribe(Module& module, QWidget* parent) {
  try {
    module.askForVIM();
  } catch (const Ky::KyError&) {
    QMessageBox::warning(parent, "Connection error",
                         "Error: Could not connect to the KyVideoDevice Module. Please check that "
                         "it is running and try again",
                         QMessageBox::Ok, QMessageBox::NoButton);
  }
}

// As if the registration had been waited for.
void Interface::requireRegistered(const Module& module, Ky::KyAhead& ahead) {
  const auto errors = ahead.finish();
  if (errors.empty()) return;
  module.getParentBroker()->unregisterModule(module.getName());
  throw Ky::KyError(errors.front());
}

namespace {

// Hosts of the older kind look here before they load a plug-in; tools read it from the section.
__attribute__((section(".qtplugin"), used)) const char kVerificationData[] =
    "pattern=QT_PLUGIN_VERIFICATION_DATA\n"
    "version=4.8.1\n"
    "debug=false\n"
    "buildkey=i386 linux g++-4 full-config";

}  // namespace

extern "C" Q_DECL_EXPORT const char* qt_plugin_query_verification_data() {
  return kVerificationData;
}
