// SPDX-License-Identifier: Apache-2.0
#include "window/room.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace Lookout {
namespace {

// A title bar and frame, which belong to the window manager.
constexpr QSize kFrame(10, 40);

}  // namespace

QSize roomOnScreen(const QWidget& window) {
  // There the screen is made up, and nobody has to reach the window's far end.
  if (QGuiApplication::platformName() == "offscreen") return {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
  return window.screen()->availableSize() - kFrame;
}

QSize roomToGrow(const QWidget& window) {
  if (window.isMaximized() || window.isFullScreen()) return {0, 0};
  return (roomOnScreen(window) - window.size()).expandedTo({0, 0});
}

bool hasRoomBeside(const QWidget& window, const QWidget& widget) {
  return window.width() + widget.width() <= roomOnScreen(window).width();
}

}  // namespace Lookout
