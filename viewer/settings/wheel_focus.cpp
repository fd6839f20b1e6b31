// SPDX-License-Identifier: Apache-2.0
#include "viewer/settings/wheel_focus.h"

#include <QEvent>
#include <QWidget>

namespace {

// Belongs to the control that it watches.
class WheelFilter : public QObject {
 public:
  explicit WheelFilter(QWidget& control) : QObject(&control) { control.installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

}  // namespace

void needFocusForWheel(QWidget& control) {
  control.setFocusPolicy(Qt::StrongFocus);
  new WheelFilter(control);
}
