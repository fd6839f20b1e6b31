// SPDX-License-Identifier: Apache-2.0
// What the program looks like in task bars and title bars.
#pragma once

#include <QIcon>

namespace Lookout {

// The desktop theme's icon or, where the theme has none, that beside an installed or built program
// whose folder is `bin`. GUI thread.
QIcon windowIcon(const QString& bin);

}  // namespace Lookout
