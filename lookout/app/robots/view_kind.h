// SPDX-License-Identifier: Apache-2.0
// How the kinds of views are called, see LookoutWidget::viewKinds().
#pragma once

#include <QString>

namespace Lookout {

struct ViewKind {
  QString name;     // for titles; that of a kind nobody knows is the kind itself
  QString open;     // the menu's words for opening one
  QString another;  // and for opening one more; empty where one is enough
};

// GUI thread.
ViewKind viewKind(const QString& kind);

}  // namespace Lookout
