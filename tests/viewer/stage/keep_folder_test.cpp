// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/keep_folder.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "lookout/settings_of_test.h"

namespace {

class KeepFolder : public testing::Test {
 protected:
  KeepFolder() {
    qputenv("HOME", QFile::encodeName(fHome.path()));
    qunsetenv("XDG_CONFIG_HOME");
  }
  QString inHome(const QString& path) const { return QDir(fHome.path()).filePath(path); }

  QTemporaryDir fHome;
  SettingsOfTest fSettings;
};

TEST_F(KeepFolder, IsAmongThePicturesUntilOneIsChosen) {
  const QString folder = inHome("Pictures/Lookout");
  EXPECT_FALSE(QDir(folder).exists());
  EXPECT_EQ(keepFolder(), folder);
  EXPECT_TRUE(QDir(folder).exists());
}

TEST_F(KeepFolder, IsTheOneThatWasChosen) {
  setKeepFolder(inHome("stick"));
  EXPECT_EQ(keepFolder(), inHome("stick"));
  EXPECT_EQ(QSettings().value("Stage/folder").toString(), inHome("stick"));
  EXPECT_FALSE(QDir(inHome("stick")).exists())
      << "a stick that was pulled out is no folder to make";
}

TEST(SafeName, KeepsWhatFileSystemsTake) {
  EXPECT_EQ(safeName("kitchen"), "kitchen");
  EXPECT_EQ(safeName("Küche 2 (links)"), "Küche 2 (links)");
  EXPECT_EQ(safeName(QString::fromUtf8("🤖")), QString::fromUtf8("🤖"));
}

TEST(SafeName, ReplacesWhatFileSystemsTakeForSomethingElse) {
  EXPECT_EQ(safeName("192.168.1.20:9559"), "192.168.1.20-9559");
  EXPECT_EQ(safeName("a/b\\c"), "a-b-c");
  EXPECT_EQ(safeName("a\nb\tc\x7f"), "a-b-c-");
  EXPECT_EQ(safeName("what? \"*\" <|>"), "what- --- ---");
  EXPECT_EQ(safeName("[::1]:9559"), "[--1]-9559");
}

TEST(SafeName, HidesNoFile) {
  EXPECT_EQ(safeName(".hidden"), "hidden");
  EXPECT_EQ(safeName("../../etc"), "-..-etc");
  EXPECT_EQ(safeName(" a. "), "a");
  EXPECT_EQ(safeName(".."), "robot");
  EXPECT_EQ(safeName(""), "robot");
}

TEST(SafeName, LeavesRoomForADate) {
  EXPECT_EQ(safeName(QString(300, 'a')), QString(150, 'a'));
  EXPECT_EQ(safeName(QString::fromUtf8("🤖").repeated(100)),
            QString::fromUtf8("🤖").repeated(37));
}

TEST(KeptName, SaysWhichRobotAndWhen) {
  const QDateTime before = QDateTime::currentDateTime();
  const QString name = keptName("the robot:9559");
  const QRegularExpression form("^the robot-9559 (\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d)$");
  const auto match = form.match(name);
  ASSERT_TRUE(match.hasMatch()) << name.toStdString();
  const auto time = QDateTime::fromString(match.captured(1), "yyyy-MM-dd HH-mm-ss");
  EXPECT_LE(before.toSecsSinceEpoch(), time.toSecsSinceEpoch());
  EXPECT_GE(QDateTime::currentDateTime(), time);
}

TEST(FreeFileName, IsOneThatNobodyHas) {
  const QTemporaryDir folder;
  const auto in = [&](const QString& name) { return QDir(folder.path()).filePath(name); };
  const auto make = [&](const QString& name) { QFile(in(name)).open(QIODevice::WriteOnly); };
  EXPECT_EQ(freeFileName(folder.path(), "a", ".png"), in("a.png"));
  make("a.png");
  EXPECT_EQ(freeFileName(folder.path(), "a", ".mkv"), in("a.mkv"));
  EXPECT_EQ(freeFileName(folder.path(), "a", ".png"), in("a (2).png"));
  make("a (2).png");
  EXPECT_EQ(freeFileName(folder.path(), "a", ".png"), in("a (3).png"));
  QFile::link(in("nowhere"), in("a (3).png"));
  EXPECT_EQ(freeFileName(folder.path(), "a", ".png"), in("a (4).png")) << "a link to nothing";
}

}  // namespace
