// SPDX-License-Identifier: Apache-2.0
#include "robots/open_dialogs.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>

namespace Lookout {
namespace {

bool descendsFrom(const QObject* object, const QObject& ancestor) {
  while (object != nullptr && object != &ancestor) object = object->parent();
  return object != nullptr;
}

}  // namespace

bool hasOpenDialog(const QWidget& widget) {
  const QWidgetList windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(), [&widget](const QWidget* window) {
    const bool holdsInput = window->isModal() || window->windowType() == Qt::Popup;
    return window->isVisible() && holdsInput && descendsFrom(window->parent(), widget);
  });
}

}  // namespace Lookout
