#include "detection/objectdisplaysettings_widget.h"

#include "plugin/module.h"

ObjectDisplaySettingsWidget::ObjectDisplaySettingsWidget(boost::shared_ptr<Module> module,
                                                         QWidget* parent)
    : QWidget(parent), fModule(module) {
}
