// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/recording_file.h"

#include <gtest/gtest.h>

namespace {

QDateTime at(qint64 seconds) {
  return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

}  // namespace

TEST(RecordingFile, IsKnownByItsEnding) {
  EXPECT_EQ(kindOf("clip.avi"), RecordingKind::Film);
  EXPECT_EQ(kindOf("CLIP.AVI"), RecordingKind::Film);
  EXPECT_EQ(kindOf("lookout_photo.jpg"), RecordingKind::Photo);
  EXPECT_EQ(kindOf("a.jpeg"), RecordingKind::Photo);
  for (const char* other : {"avi", "clip.avi.part", "run.sh", "photo.jpg.desktop", "a"})
    EXPECT_EQ(kindOf(other), RecordingKind::Other) << other;
}

TEST(RecordingFile, StandsInTheFolderOfTheRobot) {
  EXPECT_EQ(kRecordingsOnRobot, "/home/tam/recordings/cameras/");
  EXPECT_EQ(kRecordingsOnServer, "recordings/cameras/");
}

TEST(RecordingFile, TheNewestIsTheFirst) {
  const auto files = recordingsIn({{"old.avi", 1, at(10), false},
                                   {"b.avi", 1, at(20), false},
                                   {"folder", -1, at(40), true},
                                   {".hidden.jpg", 1, at(40), false},
                                   {"a.avi", 1, at(20), false},
                                   {"timeless.avi", 1, {}, false},
                                   {"new.jpg", 1, at(30), false}});
  QStringList names;
  for (const RecordingFile& file : files) names << file.name;
  EXPECT_EQ(names, QStringList({"new.jpg", "a.avi", "b.avi", "old.avi", "timeless.avi"}));
}

TEST(RecordingFile, HasAKeyOfItsOwn) {
  const RecordingFile file{"clip.avi", 100, at(10)};
  const QString key = file.key("robot");
  EXPECT_EQ(key, (RecordingFile{"clip.avi", 100, at(10)}).key("robot"));
  const QString others[] = {file.key("other"),
                            RecordingFile{"clip_2.avi", 100, at(10)}.key("robot"),
                            RecordingFile{"clip.avi", 101, at(10)}.key("robot"),
                            RecordingFile{"clip.avi", 100, at(11)}.key("robot")};
  for (const QString& other : others) EXPECT_NE(key, other);
  EXPECT_FALSE((RecordingFile{"../../x", 1, {}}.key("../..").contains('/')));
}
