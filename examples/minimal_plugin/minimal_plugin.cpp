// SPDX-License-Identifier: Apache-2.0
// The smallest Lookout plug-in: shows the names of the robot's modules.
//
//   lookout --plugins FOLDER-WITH-THIS-PLUG-IN --robot 127.0.0.1
#include <QLabel>
#include <QVBoxLayout>

#include "ky/module.h"
#include "lookout/lookout_widget.h"
#include "lookout/widget_interface.h"

namespace {

class ModuleList : public LookoutWidget {
 public:
  ModuleList(const boost::shared_ptr<Ky::KyBroker>& broker, QWidget* parent)
      : LookoutWidget(parent) {
    QStringList names;
    for (const std::string& name : broker->moduleNames()) names << QString::fromStdString(name);
    auto* label = new QLabel("The robot's modules:\n\n" + names.join('\n'), this);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    (new QVBoxLayout(this))->addWidget(label);
  }
};

}  // namespace

// QObject comes first among the bases, and the identifier is that of the interface: the host
// looks at both.
class MinimalPlugin : public QObject, public WidgetInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID LOOKOUT_WIDGET_INTERFACE_IID)
  Q_INTERFACES(WidgetInterface)

 public:
  // Once a robot. When the robot can't be reached, KyError passes on to the host, which shows it
  // and tries again.
  QWidget* getWidget(QWidget* parent, const std::string& robotIp, int robotPort,
                     const std::string& resourcePath) override {
    initBroker(fBroker, "MinimalBroker", robotIp, robotPort, resourcePath);
    fWidget = new ModuleList(fBroker, parent);
    return fWidget;
  }
};

#include "minimal_plugin.moc"
