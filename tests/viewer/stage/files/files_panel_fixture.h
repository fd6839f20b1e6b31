// SPDX-License-Identifier: Apache-2.0
// The panel of files, and a robot with recordings, on the port of FTP.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <memory>

#include "lookout/settings_of_test.h"
#include "support/own_network.h"
#include "support/wait.h"
#include "tests/viewer/download/robot_files.h"
#include "tests/viewer/stage/files/recordings.h"
#include "viewer/download/ftp_logins.h"
#include "viewer/stage/files/files_model.h"
#include "viewer/stage/files/files_panel.h"
#include "viewer/stage/keep_folder.h"

// What a user at the desktop sees and does.
class Panel : public testing::Test {
 protected:
  Panel() { qputenv("XDG_CACHE_HOME", cache.path().toUtf8()); }
  void SetUp() override {
    NEED_OWN_NETWORK();
    setKeepFolder(kept.path());
    robot.serve(21);
  }

  // Older by so many seconds.
  void record(const std::string& name, const std::string& content, int age = 0) const {
    robot.write("recordings/cameras/" + name, content);
    const auto path = robot / ("recordings/cameras/" + name);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(path, now - std::chrono::seconds(age));
  }
  static void logInBefore() {
    Dk::keepFtpLogin("127.0.0.1", {RobotFiles::kUser, RobotFiles::kPassword});
  }

  void show(QSize size = {300, 500}) {
    if (!panel) {
      panel = std::make_unique<FilesPanel>("127.0.0.1", nullptr);
    }
    panel->resize(size);
    panel->show();
  }
  FilesModel& model() const { return *panel->findChild<FilesModel*>(); }
  QAbstractItemView& list() const { return *panel->findChild<QAbstractItemView*>(); }
  QStringList names() const {
    QStringList names;
    for (int row = 0; row < model().rowCount(); ++row) names << model().file(row).name;
    return names;
  }
  int rowOf(const QString& name) const { return static_cast<int>(names().indexOf(name)); }
  bool waitForFiles(int count) const {
    return waitUntil([&] { return model().rowCount() == count; });
  }
  bool waitForThumbnail(const QString& name) const {
    return waitUntil([&] { return model().hasThumbnail(rowOf(name)); });
  }
  bool waitForState(const QString& name, DownloadState::Kind kind) const {
    return waitUntil([&] { return stateOf(name).kind == kind; });
  }
  const DownloadState& stateOf(const QString& name) const { return model().state(rowOf(name)); }

  // Empty when there is none.
  QString message() const {
    const auto* label = panel->findChild<QLabel*>(QString());
    for (const auto* any : panel->findChildren<QLabel*>())
      if (any->accessibleName() == "Message") label = any;
    return label != nullptr && label->isVisible() ? label->text() : QString();
  }
  QPushButton* messageButton() const { return panel->findChild<QPushButton*>(); }

  void select(const QStringList& wanted) const {
    list().clearSelection();
    for (const QString& name : wanted)
      list().selectionModel()->select(model().index(rowOf(name)), QItemSelectionModel::Select);
  }
  QAction& action(const QString& text) const {
    for (QAction* action : panel->findChildren<QAction*>())
      if (action->text() == text) return *action;
    throw std::runtime_error("there is no action " + text.toStdString());
  }
  void trigger(const QString& text, const QStringList& names) const {
    select(names);
    action(text).trigger();
  }
  QStringList keptFiles() const {
    return QDir(kept.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }
  std::string keptContent(const QString& name) const {
    return contentOf(kept.filePath(name).toStdString());
  }

  SettingsOfTest settings;
  QTemporaryDir cache;
  QTemporaryDir kept;
  RobotFiles robot;
  std::unique_ptr<FilesPanel> panel;
};
