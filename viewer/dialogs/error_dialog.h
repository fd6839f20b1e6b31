// SPDX-License-Identifier: Apache-2.0
// Message boxes that a remotely controlled desktop can do without.
#pragma once

#include <QMessageBox>

namespace Dk {

// A warning. The arrow is the cursor while it exists, whatever else the application shows. GUI
// thread only.
class ErrorDialog : public QMessageBox {
  Q_OBJECT

 public:
  // Ok, where it is one of `buttons`, is what Return presses. Texts are shown as they are, without
  // formatting.
  ErrorDialog(const QString& title, const QString& text, QWidget* parent,
              QMessageBox::StandardButton buttons);
  ErrorDialog(const QString& title, const QString& text, const QString& detailedText,
              QWidget* parent, QMessageBox::StandardButton buttons);
  ~ErrorDialog() override;

  // Shows the box and waits for the user. The button pressed; Ok at once, without showing anything,
  // where the host's setting "Preferences/remoteControl" says that nobody is there to press it.
  int displayDialog();

 protected:
  // Closes whatever buttons there are.
  void closeEvent(QCloseEvent* event) override;
};

// The same with something good or neutral to say, and one button.
class InformationDialog : public ErrorDialog {
  Q_OBJECT

 public:
  InformationDialog(const QString& title, const QString& text, QWidget* parent);
};

}  // namespace Dk
