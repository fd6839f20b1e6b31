// SPDX-License-Identifier: Apache-2.0
// The options that every Qt program has, and that QApplication takes from the command line itself.
#pragma once

#include <QStringList>

namespace Lookout {

struct QtOptions {
  // What is left for the program, beginning with its name.
  QStringList others;
  // Whether they say where to show windows.
  bool choosesDisplay = false;
  // The option that lacks its value; empty when none does.
  QString incomplete;
};

// Tells Qt's options, with one dash as Qt documents them, from the program's own.
QtOptions takeQtOptions(const QStringList& arguments);

}  // namespace Lookout
