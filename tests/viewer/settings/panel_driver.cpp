// SPDX-License-Identifier: Apache-2.0
#include "tests/viewer/settings/panel_driver.h"

#include <QComboBox>
#include <QStyleOptionSlider>
#include <algorithm>

namespace {

std::string nameOf(const QWidget* widget) {
  if (const auto* box = qobject_cast<const QCheckBox*>(widget)) return box->text().toStdString();
  if (const auto* label = qobject_cast<const QLabel*>(widget))
    return "label " + label->text().toStdString();
  return widget->accessibleName().toStdString();
}

QRect placeOf(const QWidget* widget, const QWidget& panel) {
  return QRect(widget->mapTo(&panel, QPoint()), widget->size());
}

QWidgetList widgetsOf(const QWidget& panel, bool labelsToo) {
  QWidgetList widgets;
  for (QWidget* widget : panel.findChildren<QWidget*>()) {
    const bool control = qobject_cast<QCheckBox*>(widget) || qobject_cast<QSlider*>(widget) ||
                         qobject_cast<QComboBox*>(widget);
    if (widget->isVisible() && (control || (labelsToo && qobject_cast<QLabel*>(widget))))
      widgets.append(widget);
  }
  return widgets;
}

}  // namespace

void dragWithMouse(QSlider* slider, int value) {
  QStyleOptionSlider option;
  option.initFrom(slider);
  option.orientation = slider->orientation();
  option.minimum = slider->minimum();
  option.maximum = slider->maximum();
  const auto handleAt = [&](int position) {
    option.sliderPosition = option.sliderValue = position;
    return slider->style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
        .center();
  };
  const QPoint from = handleAt(slider->value());
  const QPoint to = handleAt(value);
  QTest::mousePress(slider, Qt::LeftButton, {}, from);
  for (int step = 1; step <= 3; ++step) QTest::mouseMove(slider, from + (to - from) * step / 3);
  QTest::mouseRelease(slider, Qt::LeftButton, {}, to);
}

PanelState stateOf(const QWidget& panel) {
  PanelState state;
  const QWidgetList all = panel.findChildren<QWidget*>();
  for (QWidget* widget : widgetsOf(panel, false)) {
    ControlState& control = state[nameOf(widget)];
    control.enabled = widget->isEnabled();
    if (const auto* box = qobject_cast<QCheckBox*>(widget)) control.value = box->isChecked();
    if (const auto* combo = qobject_cast<QComboBox*>(widget)) control.value = combo->currentIndex();
    if (const auto* slider = qobject_cast<QSlider*>(widget)) {
      control.value = slider->value();
      // The label that was made before the slider.
      control.label = qobject_cast<QLabel*>(all.at(all.indexOf(widget) - 1))->text().toStdString();
    }
  }
  return state;
}

std::vector<std::string> controlsOf(const QWidget& panel) {
  QWidgetList widgets = widgetsOf(panel, false);
  std::stable_sort(widgets.begin(), widgets.end(), [&](const QWidget* a, const QWidget* b) {
    return placeOf(a, panel).center().y() < placeOf(b, panel).center().y();
  });
  std::vector<std::string> names;
  for (const QWidget* widget : widgets) names.push_back(nameOf(widget));
  return names;
}

std::vector<std::string> controlsCutIn(const QWidget& panel) {
  std::vector<std::string> cut;
  const QWidgetList widgets = widgetsOf(panel, true);
  for (const QWidget* widget : widgets) {
    const QRect place = placeOf(widget, panel);
    const QSize needed = widget->minimumSizeHint();
    // A label's own hint follows its fixed width; the text's is what counts.
    const auto* label = qobject_cast<const QLabel*>(widget);
    const int textWidth =
        label != nullptr ? label->fontMetrics().horizontalAdvance(label->text()) : 0;
    bool whole = panel.rect().contains(place) && place.height() >= needed.height() &&
                 place.width() >= std::min(needed.width(), widget->maximumWidth()) &&
                 place.width() >= textWidth;
    for (const QWidget* other : widgets)
      if (other != widget && placeOf(other, panel).intersects(place)) whole = false;
    if (!whole) cut.push_back(nameOf(widget));
  }
  return cut;
}
