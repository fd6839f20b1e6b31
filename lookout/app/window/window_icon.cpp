// SPDX-License-Identifier: Apache-2.0
#include "window/window_icon.h"

#include <QDir>

namespace Lookout {

QIcon windowIcon(const QString& bin) {
  const QIcon own(QDir(bin).filePath("../share/icons/hicolor/128x128/apps/lookout.png"));
  return QIcon::fromTheme("lookout", own);
}

}  // namespace Lookout
