// SPDX-License-Identifier: Apache-2.0
#include "robots/full_screen.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace Lookout {

FullScreen::FullScreen(QWidget& content, QScreen& screen, const QString& title) {
  setWindowTitle(title);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&content);
  // A window fills the screen that it stands on.
  setGeometry(screen.geometry());
  showFullScreen();
  content.show();
  activateWindow();
}

void FullScreen::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F11)
    emit leaveWanted();
  else
    QWidget::keyPressEvent(event);
}

void FullScreen::closeEvent(QCloseEvent* event) {
  event->ignore();  // whoever made it ends it
  emit leaveWanted();
}

}  // namespace Lookout
