// SPDX-License-Identifier: Apache-2.0
// Tells widgets that can't be deleted just now.
#pragma once

class QWidget;

namespace Lookout {

// Whether a modal dialog or a menu of the widget is open: a function of the widget may then be
// waiting for it, further down on this thread's stack. GUI thread.
bool hasOpenDialog(const QWidget& widget);

}  // namespace Lookout
