// SPDX-License-Identifier: Apache-2.0
#include "viewer/dialogs/get_loginpassword_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace Dk {

GetLoginPasswordDialog::GetLoginPasswordDialog(QWidget* parent)
    : QDialog(parent), fLogin(new QLineEdit(this)), fPassword(new QLineEdit(this)) {
  setWindowTitle(tr("Authentication required"));
  setMinimumWidth(250);
  fPassword->setEchoMode(QLineEdit::Password);
  auto* loginLabel = new QLabel(tr("Login:"), this);
  auto* passwordLabel = new QLabel(tr("Password:"), this);
  loginLabel->setBuddy(fLogin);
  passwordLabel->setBuddy(fPassword);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
  connect(buttons, SIGNAL(accepted()), this, SLOT(accept()));
  connect(buttons, SIGNAL(rejected()), this, SLOT(reject()));

  auto* grid = new QGridLayout(this);
  grid->addWidget(new QLabel(tr("Please authenticate to continue."), this), 0, 0, 1, 2);
  grid->addWidget(loginLabel, 1, 0);
  grid->addWidget(fLogin, 1, 1);
  grid->addWidget(passwordLabel, 2, 0);
  grid->addWidget(fPassword, 2, 1);
  grid->addWidget(buttons, 3, 0, 1, 2);
}

void GetLoginPasswordDialog::getLoginPassword(QString& login, QString& password) {
  login = fLogin->text();
  password = fPassword->text();
}

}  // namespace Dk
