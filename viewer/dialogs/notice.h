// SPDX-License-Identifier: Apache-2.0
// Says something in passing.
#pragma once

#include <QLabel>
#include <QTimer>
#include <chrono>

// A text that lies over a widget for some seconds, takes no place in its layout and none of its
// clicks. Hidden while there is nothing to say. GUI thread.
class Notice : public QLabel {
  Q_OBJECT

 public:
  enum class Kind { Done, Failed };

  explicit Notice(QWidget* parent,
                  std::chrono::milliseconds shownFor = std::chrono::milliseconds(8000));

  // Shows a text, which may be anybody's, in place of the one before. It stands in the middle of
  // the top of `room`, part of the parent, as narrow as it can.
  void say(Kind kind, const QString& text, const QRect& room);

 private:
  void place(const QRect& room);

  QTimer fEnd;
};
