// SPDX-License-Identifier: Apache-2.0
#include "robots/connect_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "robots/remembered_robots.h"
#include "robots/robot_address.h"

namespace Lookout {

ConnectDialog::ConnectDialog(QWidget* parent)
    : QDialog(parent),
      fAddress(new QLineEdit(this)),
      fPort(new QSpinBox(this)),
      fUnencrypted(
          new QCheckBox(tr("&Without encryption (the robot was started with --insecure)"), this)),
      fError(new QLabel(this)),
      fRemembered(new QListWidget(this)),
      fForget(new QPushButton(tr("&Forget"), this)) {
  setWindowTitle(tr("Connect to a robot"));
  setMinimumWidth(420);
  fError->setObjectName("error");
  fError->setTextFormat(Qt::PlainText);
  fError->setWordWrap(true);
  fError->setStyleSheet("QLabel { color: white; background: #b00020; padding: 6px; }");
  fError->hide();

  auto* buttons = new QDialogButtonBox(this);
  buttons->addButton(tr("&Connect"), QDialogButtonBox::AcceptRole)->setDefault(true);
  buttons->addButton(QDialogButtonBox::Cancel);
  connect(buttons, &QDialogButtonBox::accepted, this, &ConnectDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &ConnectDialog::reject);

  buildList();
  auto* listButtons = new QHBoxLayout;
  listButtons->addStretch(1);
  listButtons->addWidget(fForget);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(buildAddressRow());
  layout->addWidget(fError);
  layout->addWidget(new QLabel(tr("Robots used before:"), this));
  layout->addWidget(fRemembered);
  layout->addLayout(listButtons);
  layout->addWidget(buttons);
  fAddress->setFocus();
}

QWidget* ConnectDialog::buildAddressRow() {
  auto* row = new QWidget(this);
  fAddress->setPlaceholderText(tr("name or IP address of the robot"));
  fAddress->setObjectName("address");
  fPort->setObjectName("port");
  fPort->setRange(1, 65535);
  fPort->setValue(Ky::kDefaultPort);
  fUnencrypted->setObjectName("unencrypted");
  connect(fAddress, &QLineEdit::textChanged, this, &ConnectDialog::showEncryption);
  connect(fPort, &QSpinBox::valueChanged, this, &ConnectDialog::showEncryption);
  auto* layout = new QFormLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addRow(tr("&Address:"), fAddress);
  layout->addRow(tr("&Port:"), fPort);
  layout->addRow(fUnencrypted);
  const QStringList remembered = RememberedRobots::all();
  showRobot(remembered.isEmpty() ? "127.0.0.1" : remembered.first());
  fAddress->selectAll();
  return row;
}

void ConnectDialog::buildList() {
  fRemembered->setObjectName("remembered");
  fRemembered->addItems(RememberedRobots::all());
  fForget->setObjectName("forget");
  fForget->setToolTip(tr("Remove the selected robot from this list"));
  connect(fRemembered, &QListWidget::currentTextChanged, this, &ConnectDialog::showRobot);
  connect(fRemembered, &QListWidget::itemSelectionChanged, this, &ConnectDialog::updateForget);
  connect(fRemembered, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    showRobot(item->text());
    accept();
  });
  connect(fForget, &QPushButton::clicked, this, &ConnectDialog::forgetSelected);
  updateForget();
}

void ConnectDialog::showRobot(const QString& robot) {
  if (robot.isEmpty()) return;
  try {
    const Ky::KyAddress address = Ky::KyAddress::parse(robot.toStdString());
    fAddress->setText(QString::fromStdString(address.host));
    fPort->setValue(address.port);
  } catch (const Ky::KyError&) {
    // Settings edited by hand: shown as they are, accept() tells.
    fAddress->setText(robot);
  }
}

// Follows the address, so that what was chosen for one robot never holds for another.
void ConnectDialog::showEncryption() {
  QString robot;
  try {
    robot = QString::fromStdString(robotAddress(fAddress->text(), fPort->value()).toString());
  } catch (const Ky::KyError&) {
    // Not typed to its end yet.
  }
  fUnencrypted->setChecked(RememberedRobots::isUnencrypted(robot));
}

bool ConnectDialog::isUnencrypted() const {
  return fUnencrypted->isChecked();
}

void ConnectDialog::forgetSelected() {
  for (QListWidgetItem* item : fRemembered->selectedItems()) {
    RememberedRobots::forget(item->text());
    delete item;
  }
}

void ConnectDialog::updateForget() {
  fForget->setEnabled(!fRemembered->selectedItems().isEmpty());
}

void ConnectDialog::accept() {
  try {
    fRobot = robotAddress(fAddress->text(), fPort->value());
    QDialog::accept();
  } catch (const Ky::KyError& error) {
    fError->setText(QString::fromUtf8(error.what()));
    fError->show();
    fAddress->setFocus();
  }
}

}  // namespace Lookout
