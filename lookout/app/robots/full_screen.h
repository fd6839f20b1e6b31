// SPDX-License-Identifier: Apache-2.0
// A window that fills a screen.
#pragma once

#include <QWidget>

class QScreen;

namespace Lookout {

// Shows a widget on the whole of a screen. The keys Esc and F11, where the widget leaves them, and
// the window's closing ask for its end. GUI thread.
class FullScreen : public QWidget {
  Q_OBJECT

 public:
  // Takes `content` as its child, and shows itself. Whoever made it takes that back before its end.
  FullScreen(QWidget& content, QScreen& screen, const QString& title);

 signals:
  void leaveWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace Lookout
