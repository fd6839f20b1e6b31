// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/part_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

class PartOf : public testing::Test {
 protected:
  QStringList files() const {
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }
  QString keep(const QString& name, const char* content, const QDateTime& time = {}) const {
    PartFile part(folder.path(), name);
    part.device()->write(content);
    return part.keep(time);
  }
  static QByteArray contentOf(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
  }

  QTemporaryDir folder;
};

}  // namespace

TEST_F(PartOf, AFileHasItsNameOnlyWhenItIsComplete) {
  PartFile part(folder.path(), "clip.avi");
  ASSERT_TRUE(part.isOpen());
  part.device()->write("half");
  EXPECT_FALSE(files().contains("clip.avi"));
  const QDateTime time = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
  const QString path = part.keep(time);
  EXPECT_EQ(path, folder.filePath("clip.avi"));
  EXPECT_EQ(contentOf(path), "half");
  EXPECT_EQ(QFileInfo(path).lastModified(), time);
  EXPECT_EQ(files(), QStringList("clip.avi"));
}

TEST_F(PartOf, AFileThatIsNotKeptLeavesNothing) {
  { const PartFile part(folder.path(), "clip.avi"); }
  EXPECT_EQ(files(), QStringList());
}

TEST_F(PartOf, AFileOverwritesNone) {
  EXPECT_EQ(keep("clip.avi", "1"), folder.filePath("clip.avi"));
  EXPECT_EQ(keep("clip.avi", "2"), folder.filePath("clip (2).avi"));
  EXPECT_EQ(keep("clip.avi", "3"), folder.filePath("clip (3).avi"));
  EXPECT_EQ(keep("noending", "4"), folder.filePath("noending"));
  EXPECT_EQ(keep("noending", "5"), folder.filePath("noending (2)"));
  EXPECT_EQ(contentOf(folder.filePath("clip.avi")), "1");
}

TEST_F(PartOf, TwoFilesOfOneNameMayComeAtOnce) {
  PartFile first(folder.path(), "clip.avi");
  PartFile second(folder.path(), "clip.avi");
  first.device()->write("first");
  second.device()->write("second");
  EXPECT_EQ(contentOf(second.keep({})), "second");
  EXPECT_EQ(contentOf(first.keep({})), "first");
}

TEST_F(PartOf, AFileThatCanNotBeMadeSaysWhy) {
  const PartFile lost(folder.filePath("nowhere"), "clip.avi");
  EXPECT_FALSE(lost.isOpen());
  EXPECT_EQ(lost.error(), "No such file or directory");
  const PartFile longOne(folder.path(), QString(300, 'a'));
  EXPECT_FALSE(longOne.isOpen());
  EXPECT_EQ(longOne.error(), "File name too long");
}
