// SPDX-License-Identifier: Apache-2.0
// The host's preferences.
#pragma once

#include <QDialog>

class QCheckBox;

namespace Lookout {

// Kept in the application's QSettings, where plug-ins read them:
//   "Preferences/remoteControl" (bool)  error dialogs are not shown, since nobody is there to
//                                       close them
// GUI thread.
class PreferencesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PreferencesDialog(QWidget* parent = nullptr);

 public slots:
  // Stores what is shown.
  void accept() override;

 private:
  QCheckBox* fRemoteControl;
};

}  // namespace Lookout
