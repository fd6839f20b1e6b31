// SPDX-License-Identifier: Apache-2.0
// Does what a person would do with the dialogs that open one after the other.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <functional>
#include <map>

// While it lives, calls for each modal dialog that opens the function that is registered under its
// title, once a dialog, as soon as it is shown; a dialog that nobody expects is closed. Keeps the
// titles in the order in which they appeared. GUI thread.
class ModalDriver : public QObject {
 public:
  ModalDriver() {
    QObject::connect(&fTimer, &QTimer::timeout, &fTimer, [this] { look(); });
    fTimer.start(1);
  }

  template <class Dialog, class Action>
  void on(const QString& title, Action action) {
    fActions[title] = [action](QWidget* widget) { action(*qobject_cast<Dialog*>(widget)); };
  }
  const QStringList& seen() const { return fSeen; }

 private:
  void look() {
    QWidget* widget = QApplication::activeModalWidget();
    if (widget == nullptr || widget->property("seen").toBool()) return;
    widget->setProperty("seen", true);
    fSeen << widget->windowTitle();
    const auto action = fActions.find(widget->windowTitle());
    if (action == fActions.end()) {
      widget->close();
    } else {
      action->second(widget);
    }
  }

  QTimer fTimer;
  QStringList fSeen;
  std::map<QString, std::function<void(QWidget*)>> fActions;
};
