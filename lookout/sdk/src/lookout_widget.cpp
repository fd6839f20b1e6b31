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
