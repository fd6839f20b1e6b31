// SPDX-License-Identifier: Apache-2.0
// How large the window may grow.
#pragma once

#include <QSize>

class QWidget;

namespace Lookout {

// The largest size for a window on its screen. GUI thread.
QSize roomOnScreen(const QWidget& window);

// How much larger the window may become; nothing where it is maximized, or fills the screen.
QSize roomToGrow(const QWidget& window);

// Whether the window can grow so that a second widget of this one's size stands beside it.
bool hasRoomBeside(const QWidget& window, const QWidget& widget);

}  // namespace Lookout
