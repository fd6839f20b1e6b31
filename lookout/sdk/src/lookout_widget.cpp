// SPDX-License-Identifier: Apache-2.0
#include "lookout/lookout_widget.h"

LookoutWidget::LookoutWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {
}

LookoutWidget::~LookoutWidget() = default;

void LookoutWidget::setPlaying(bool) {
}

bool LookoutWidget::restoreState(const QByteArray&) {
  return false;
}

QString LookoutWidget::choose(const QString& setting, const QString&) {
  return tr("%1 can't be set here").arg(setting);
}

LookoutWidget* LookoutWidget::makeView(const QString&, QWidget*) {
  return nullptr;
}
