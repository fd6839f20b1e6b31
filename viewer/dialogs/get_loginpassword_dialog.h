// SPDX-License-Identifier: Apache-2.0
// Asks for a user name and a password.
#pragma once

#include <QDialog>

class QLineEdit;

namespace Dk {

// Run it with exec(); what was typed counts when it is accepted. GUI thread only.
class GetLoginPasswordDialog : public QDialog {
  Q_OBJECT

 public:
  explicit GetLoginPasswordDialog(QWidget* parent);

  void getLoginPassword(QString& login, QString& password);

 private:
  QLineEdit* fLogin;
  QLineEdit* fPassword;
};

}  // namespace Dk
