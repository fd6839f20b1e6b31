// SPDX-License-Identifier: Apache-2.0
#include "window/preferences_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QSettings>
#include <QVBoxLayout>

namespace Lookout {
namespace {

const char* const kRemoteControl = "Preferences/remoteControl";

}  // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent)
    : QDialog(parent),
      fRemoteControl(new QCheckBox(tr("&Remote control (suppress error dialogs)"), this)) {
  setWindowTitle(tr("Preferences"));
  fRemoteControl->setObjectName("remoteControl");
  fRemoteControl->setToolTip(tr("For a Lookout that a script or a robot drives"));
  fRemoteControl->setChecked(QSettings().value(kRemoteControl, false).toBool());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(fRemoteControl);
  layout->addWidget(buttons);
}

void PreferencesDialog::accept() {
  QSettings().setValue(kRemoteControl, fRemoteControl->isChecked());
  QDialog::accept();
}

}  // namespace Lookout
