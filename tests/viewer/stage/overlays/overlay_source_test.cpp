// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/overlay_source.h"

#include <gtest/gtest.h>

#include <QLocale>

#include "viewer/core/model.h"
#include "viewer/stage/overlays/overlay_text.h"

namespace {

TEST(OverlaySources, AreTheModelsInTheOrderOfTheirKeys) {
  Model model;
  for (const char* key : {"b", "a", "empty"}) model.addObjectWatch(key);
  {
    const Ky::KyCriticalSection lock(model.fObjectsMutex);
    model.fObjects["b"].fSeen = 17;
    model.fObjects["b"].fObjects["2"].description = "second";
    model.fObjects["b"].fObjects["1"] = {0.25, 0.5, 7, 3, 2, 0x123456, "first"};
    model.fObjects["a"].fObjects["1"].description = "other";
  }
  const std::vector<OverlaySource> sources = overlaysOf(model);
  ASSERT_EQ(sources.size(), 3u);
  EXPECT_EQ(sources[0].key, "a");
  EXPECT_EQ(sources[0].seen, 0);
  EXPECT_EQ(sources[1].key, "b");
  EXPECT_EQ(sources[1].seen, 17);
  EXPECT_TRUE(sources[2].items.empty());
  ASSERT_EQ(sources[1].items.size(), 2u);
  const displayObject& item = sources[1].items[0];
  EXPECT_EQ(item.x, 0.25);
  EXPECT_EQ(item.y, 0.5);
  EXPECT_EQ(item.diameter, 7);
  EXPECT_EQ(item.thickness, 3);
  EXPECT_EQ(item.shape, 2);
  EXPECT_EQ(item.colour, 0x123456u);
  EXPECT_EQ(item.description, "first");
  EXPECT_EQ(sources[1].items[1].description, "second");
}

TEST(OverlaySources, LeaveOutTheRestOfEndlessTexts) {
  Model model;
  model.addObjectWatch("key");
  {
    const Ky::KyCriticalSection lock(model.fObjectsMutex);
    model.fObjects["key"].fObjects["1"].description = std::string(10 << 20, 'x');
  }
  EXPECT_EQ(overlaysOf(model).at(0).items.at(0).description, std::string(1024, 'x'));
}

struct Words {
  const char* bytes;
  QString text;
};

TEST(OverlayTexts, AreUtf8WhereTheyAreAndElseLatin1) {
  const Words table[] = {
      {"mark 42", "mark 42"},
      {"gr\xC3\xBC\xC3\x9F", QStringLiteral("gr\u00FC\u00DF")},
      {"gr\xFC\xDF", QStringLiteral("gr\u00FC\u00DF")},
      {"caf\xE9 noir", QStringLiteral("caf\u00E9 noir")},
      {"\xE6\xB8\xAF", QStringLiteral("\u6E2F")},
      {"\xF0\x9F\x98\x80", QStringLiteral("\U0001F600")},
      {"caf\xE9", QStringLiteral("caf\u00E9")},
      {"\xFC", QStringLiteral("\u00FC")},
      {"two\nlines\tand\x01 more", "two lines and  more"},
      {"left\xE2\x80\xAEright", "left right"},
      {"", ""},
  };
  for (const Words& words : table) EXPECT_EQ(textOf(words.bytes), words.text) << words.bytes;
}

TEST(OverlayTexts, AreUtf8WhereTheyWereCutWithinACharacter) {
  for (const char* last : {"\xC3\xBC", "\xE6\xB8\xAF", "\xF0\x9F\x98\x80"})
    for (std::size_t left = 1; left < std::string(last).size(); ++left) {
      const std::string before(kLongestText - left, 'x');
      EXPECT_EQ(textOf(before + std::string(last).substr(0, left)), QString::fromStdString(before));
    }
}

TEST(OverlayTexts, NameDetectorsKeysForPeople) {
  EXPECT_EQ(sourceName("BallDetected"), "Balls");
  EXPECT_EQ(sourceName("DuckDetected"), "Ducks");
  EXPECT_EQ(sourceName("FaceDetected"), "Faces");
  EXPECT_EQ(sourceName("LandmarkDetected"), "Landmarks");
  EXPECT_EQ(sourceName("LogoDetected"), "Logos");
  EXPECT_EQ(sourceName("PictureDetected"), "Pictures");
  EXPECT_EQ(sourceName("my/figures"), "my/figures");
}

TEST(OverlayTexts, SayAgesAsFinelyAsTheyMatter) {
  QLocale::setDefault(QLocale::c());
  EXPECT_EQ(ageText(600000), "0.6 s ago");
  EXPECT_EQ(ageText(2340000), "2.3 s ago");
  EXPECT_EQ(ageText(12900000), "12 s ago");
  EXPECT_EQ(ageText(119000000), "119 s ago");
  EXPECT_EQ(ageText(3 * 3600000000LL), "180 min ago");
}

}  // namespace
