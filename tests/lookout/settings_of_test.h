// SPDX-License-Identifier: Apache-2.0
// Keeps the settings of a test away from those of the user.
#pragma once

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

class SettingsOfTest {
 public:
  SettingsOfTest() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, fFolder.path());
    QCoreApplication::setOrganizationName("Lookout");
    QCoreApplication::setApplicationName("Lookout");
  }

 private:
  QTemporaryDir fFolder;
};
