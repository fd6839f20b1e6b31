// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/cache_folder.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <utility>

#include "support/wait.h"

namespace {

class Cache : public testing::Test {
 protected:
  // Is the newest then: clocks of file systems tick slowly.
  void write(const QString& name) {
    EXPECT_TRUE(waitUntil([&] {
      QFile file(cache.path(name));
      file.open(QIODevice::WriteOnly);
      file.write(QByteArray(100, 'x'));
      file.close();
      const QDateTime written = file.fileTime(QFileDevice::FileMetadataChangeTime);
      return written > std::exchange(newest, written);
    }));
  }
  bool has(const QString& name) const { return QFile::exists(cache.path(name)); }

  QTemporaryDir home;
  bool isElsewhere = qputenv("XDG_CACHE_HOME", home.path().toUtf8());
  CacheFolder cache{"things", 250};
  QDateTime newest = QDateTime::fromSecsSinceEpoch(0);
};

}  // namespace

TEST_F(Cache, IsWhereTheUserHasCaches) {
  EXPECT_TRUE(cache.path("a/b").startsWith(home.path() + '/'));
  EXPECT_TRUE(cache.path("a/b").endsWith("/things/a/b"));
}

TEST_F(Cache, LosesTheOldestWhenThereIsTooMuch) {
  for (const char* name : {"b", "sub/a", "d", "c"}) write(name);
  cache.trim();
  EXPECT_FALSE(has("b"));
  EXPECT_FALSE(QFileInfo(cache.path("sub/a")).isFile());
  EXPECT_TRUE(has("d"));
  EXPECT_TRUE(has("c"));
}

TEST_F(Cache, KeepsWhatItHasRoomFor) {
  for (const char* name : {"a", "b"}) write(name);
  cache.trim();
  EXPECT_TRUE(has("a"));
  EXPECT_TRUE(has("b"));
}

TEST_F(Cache, NeverLosesTheNewest) {
  const CacheFolder tiny("things", 1);
  for (const char* name : {"a", "b"}) write(name);
  tiny.trim();
  EXPECT_FALSE(has("a"));
  EXPECT_TRUE(has("b"));
}
