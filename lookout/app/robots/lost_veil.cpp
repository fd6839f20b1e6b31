// SPDX-License-Identifier: Apache-2.0
#include "robots/lost_veil.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace Lookout {

LostVeil::LostVeil(QWidget* parent) : QWidget(parent), fBanner(new QLabel(this)) {
  fBanner->setTextFormat(Qt::PlainText);
  fBanner->setWordWrap(true);
  fBanner->setAlignment(Qt::AlignCenter);
  fBanner->setStyleSheet(
      "QLabel { color: white; background: #b00020; padding: 8px; font-weight: bold; }");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(fBanner);
  layout->addStretch(1);
  parent->installEventFilter(this);
  hide();
}

void LostVeil::cover(const QString& text) {
  fBanner->setText(text);
  resize(parentWidget()->size());
  raise();
  show();
}

void LostVeil::setText(const QString& text) {
  if (text.isEmpty())
    hide();
  else
    cover(text);
}

bool LostVeil::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) resize(parentWidget()->size());
  return QWidget::eventFilter(watched, event);
}

void LostVeil::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), QColor(0, 0, 0, 140));
}

}  // namespace Lookout
