// SPDX-License-Identifier: Apache-2.0
#include "qt_messages.h"

#include <QString>
#include <QtGlobal>

#include "zu/log.h"

namespace Lookout {
namespace {

zu::log::Level levelOf(QtMsgType type) {
  switch (type) {
    case QtDebugMsg:
      return zu::log::Level::debug;
    case QtInfoMsg:
      return zu::log::Level::info;
    case QtWarningMsg:
      return zu::log::Level::warning;
    case QtCriticalMsg:
      return zu::log::Level::error;
    case QtFatalMsg:
      return zu::log::Level::fatal;
  }
  return zu::log::Level::warning;
}

void write(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  // Without a display, this is said for every window and every change of its size.
  if (text == "This plugin does not support propagateSizeHints()") return;
  zu::log::write(levelOf(type), "qt", context.category != nullptr ? context.category : "default",
                 text.toStdString());
}

}  // namespace

void sendQtMessagesToLog() {
  qInstallMessageHandler(write);
}

}  // namespace Lookout
