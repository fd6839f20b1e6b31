// SPDX-License-Identifier: Apache-2.0
#include "viewer/dialogs/error_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QSettings>

namespace Dk {

ErrorDialog::ErrorDialog(const QString& title, const QString& text, QWidget* parent,
                         QMessageBox::StandardButton buttons)
    : QMessageBox(QMessageBox::Warning, title, text, buttons, parent) {
  setTextFormat(Qt::PlainText);
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  setDefaultButton(QMessageBox::Ok);
}

ErrorDialog::ErrorDialog(const QString& title, const QString& text, const QString& detailedText,
                         QWidget* parent, QMessageBox::StandardButton buttons)
    : ErrorDialog(title, text, parent, buttons) {
  setDetailedText(detailedText);
}

ErrorDialog::~ErrorDialog() {
  QApplication::restoreOverrideCursor();
}

int ErrorDialog::displayDialog() {
  if (QSettings().value("Preferences/remoteControl", false).toBool()) return QMessageBox::Ok;
  return exec();
}

void ErrorDialog::closeEvent(QCloseEvent* event) {
  event->accept();
}

InformationDialog::InformationDialog(const QString& title, const QString& text, QWidget* parent)
    : ErrorDialog(title, text, parent, QMessageBox::NoButton) {
  setIcon(QMessageBox::Information);
}

}  // namespace Dk
