// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/videorecordermodel.h"

#include <gtest/gtest.h>

TEST(VideoRecorderModel, StartsIdle) {
  const VideoRecorderModel recorder;
  EXPECT_EQ(recorder.fRecordName, "");
  EXPECT_EQ(recorder.fFilePath, "");
  EXPECT_EQ(recorder.fResolution, 1);
  EXPECT_EQ(recorder.fColorSpace, 13);
  EXPECT_EQ(recorder.fFramerate, 15);
  EXPECT_EQ(recorder.fFrameCount, 0);
  EXPECT_FALSE(recorder.fIsRecording);
  EXPECT_EQ(VideoRecorderModel::kRecordNamePrefix, "");
  EXPECT_EQ(VideoRecorderModel::kRecordFramerateDefault, 15);
}

TEST(VideoRecorderModel, TakesNames) {
  for (const char* name : {"my_video2", "_", "a", "Z9", "__a__", "new"}) {
    VideoRecorderModel recorder;
    EXPECT_TRUE(recorder.setRecordName(name)) << name;
    EXPECT_EQ(recorder.fRecordName, name);
  }
}

TEST(VideoRecorderModel, RefusesWhatIsNoNameAndKeepsTheOldOne) {
  VideoRecorderModel recorder;
  ASSERT_TRUE(recorder.setRecordName("old"));
  const std::string kNoNames[] = {
      "",         "2video",   "my video", "my-video",     "vid\xC3\xA9o",
      "vid\xE9o", "name\n",   "\nname",   " name",        "name ",
      "a.b",      "../name",  "a/b",      "name\nname",   std::string("a\0b", 3),
      "\xFF\xFE", "\xD0\xB0", "$(name)",  "\xEF\xBD\x81", std::string(1, '\0'),
  };
  for (const std::string& name : kNoNames) {
    EXPECT_FALSE(recorder.setRecordName(name)) << name;
    EXPECT_EQ(recorder.fRecordName, "old");
  }
}

TEST(VideoRecorderModel, TakesALongName) {
  VideoRecorderModel recorder;
  const std::string name(100000, 'x');
  EXPECT_TRUE(recorder.setRecordName(name));
  EXPECT_EQ(recorder.fRecordName, name);
}
