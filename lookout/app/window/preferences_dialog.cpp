// SPDX-License-Identifier: Apache-2.0
#include "window/preferences_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QSettings>
#include <QVBoxLayout>

namespace Lookout {
namespace {

const char* const kRemoteControl = "Preferences/remoteControl";
const char* const kStartFresh = "Preferences/startFresh";

}  // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent)
    : QDialog(parent),
      fRemoteControl(new QCheckBox(tr("&Remote control (suppress error dialogs)"), this)),
      fStartFresh(new QCheckBox(tr("&Start everything fresh"), this)) {
  setWindowTitle(tr("Preferences"));
  fRemoteControl->setObjectName("remoteControl");
  fRemoteControl->setToolTip(tr("For a Lookout that a script or a robot drives"));
  fRemoteControl->setChecked(QSettings().value(kRemoteControl, false).toBool());
  fStartFresh->setObjectName("startFresh");
  fStartFresh->setToolTip(
      tr("Robots that are connected from now on don't go on as they were left: with the settings, "
         "the plug-ins and the playing picture of last time"));
  fStartFresh->setChecked(startsFresh());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(fRemoteControl);
  layout->addWidget(fStartFresh);
  layout->addWidget(buttons);
}

void PreferencesDialog::accept() {
  QSettings().setValue(kRemoteControl, fRemoteControl->isChecked());
  QSettings().setValue(kStartFresh, fStartFresh->isChecked());
  QDialog::accept();
}

bool PreferencesDialog::startsFresh() {
  return QSettings().value(kStartFresh, false).toBool();
}

}  // namespace Lookout
