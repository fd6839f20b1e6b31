// SPDX-License-Identifier: Apache-2.0
#include "viewer/detection/objectdisplaysettings_widget.h"

#include "viewer/core/module.h"

ObjectDisplaySettingsWidget::ObjectDisplaySettingsWidget(boost::shared_ptr<Module> module,
                                                         QWidget* parent)
    : QWidget(parent), fModule(module) {
}
