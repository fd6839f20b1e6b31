// SPDX-License-Identifier: Apache-2.0
// The mouse wheel over a panel's controls.
#pragma once

class QWidget;

// Lets the wheel change `control` only while it has the keyboard focus, which the wheel does not
// give: whoever turns it on the way to something else must not change the robot for everybody. A
// wheel that is not for the control goes to what scrolls around it. GUI thread.
void needFocusForWheel(QWidget& control);
