// SPDX-License-Identifier: Apache-2.0
// Asks which robot to connect to.
#pragma once

#include <QDialog>

#include "ky/address.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;

namespace Lookout {

// Address, port and encryption, and the robots used before to choose from or forget. Accepted only
// with an address that can be used: robot(). GUI thread.
class ConnectDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ConnectDialog(QWidget* parent = nullptr);

  const Ky::KyAddress& robot() const { return fRobot; }
  // The robot was started with --insecure.
  bool isUnencrypted() const;

 public slots:
  // Says what is wrong with the address instead of closing.
  void accept() override;

 private:
  void buildList();
  QWidget* buildAddressRow();
  void showRobot(const QString& robot);
  void showEncryption();
  void forgetSelected();
  void updateForget();

  Ky::KyAddress fRobot;
  QLineEdit* fAddress;
  QSpinBox* fPort;
  QCheckBox* fUnencrypted;
  QLabel* fError;
  QListWidget* fRemembered;
  QPushButton* fForget;
};

}  // namespace Lookout
