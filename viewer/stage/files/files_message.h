// SPDX-License-Identifier: Apache-2.0
// What the panel of files has to say, and what can be done about it.
#pragma once

#include <QFrame>
#include <functional>

class QLabel;
class QPushButton;

// Hidden while there is nothing to say. GUI thread.
class FilesMessage : public QFrame {
  Q_OBJECT

 public:
  explicit FilesMessage(QWidget* parent);

  // Plain text. `action`: what its button does, where `button` has a text.
  void say(const QString& text, const QString& button = {}, std::function<void()> action = {});
  void sayNothing() { hide(); }
  // Takes all room that there is, or only what it needs.
  void setAlone(bool isAlone);

 private:
  QLabel* fText;
  QPushButton* fButton;
  std::function<void()> fAction;
};
