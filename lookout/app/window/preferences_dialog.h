// SPDX-License-Identifier: Apache-2.0
// The host's preferences.
#pragma once

#include <QDialog>

class QCheckBox;

namespace Lookout {

// Kept in the application's QSettings, where plug-ins read them:
//   "Preferences/remoteControl" (bool)  error dialogs are not shown, since nobody is there to
//                                       close them
//   "Preferences/startFresh" (bool)     robots are not shown as they were left last time
// GUI thread.
class PreferencesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PreferencesDialog(QWidget* parent = nullptr);

  static bool startsFresh();

 public slots:
  // Stores what is shown.
  void accept() override;

 private:
  QCheckBox* fRemoteControl;
  QCheckBox* fStartFresh;
};

}  // namespace Lookout
