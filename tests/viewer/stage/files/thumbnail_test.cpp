// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/thumbnail.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/viewer/stage/files/recordings.h"

namespace {

QImage thumbnailOf(RecordingKind kind, const std::string& bytes) {
  return thumbnailOf(kind, QByteArray::fromStdString(bytes));
}

const QColor kOrange(230, 120, 20);
const QColor kBlue(20, 60, 200);

}  // namespace

TEST(Thumbnail, ShowsThePhotoInItsShape) {
  const QImage wide = thumbnailOf(RecordingKind::Photo, photoOf(kOrange, {1280, 720}));
  EXPECT_EQ(wide.size(), QSize(320, 180));
  EXPECT_TRUE(isLike(wide.pixelColor(160, 90), kOrange))
      << wide.pixelColor(160, 90).name().toStdString();
  EXPECT_EQ(thumbnailOf(RecordingKind::Photo, photoOf(kBlue, {300, 600})).size(), QSize(120, 240));
  EXPECT_EQ(thumbnailOf(RecordingKind::Photo, photoOf(kBlue, {40, 30})).size(), QSize(40, 30));
  EXPECT_EQ(thumbnailOf(RecordingKind::Photo, photoOf(kBlue, {5000, 2})).size(), QSize(320, 1));
}

TEST(Thumbnail, ShowsTheFirstPictureOfAFilm) {
  for (const char* codec : {"XVID", "MJPG"}) {
    for (const QColor& colour : {kOrange, kBlue, QColor(Qt::white)}) {
      const QImage first = thumbnailOf(RecordingKind::Film, filmOf(colour, 5, codec, {640, 480}));
      ASSERT_EQ(first.size(), QSize(320, 240)) << codec;
      for (const QPoint& at : {QPoint(0, 0), QPoint(160, 120), QPoint(319, 239)})
        EXPECT_TRUE(isLike(first.pixelColor(at), colour))
            << codec << ' ' << first.pixelColor(at).name().toStdString();
    }
  }
}

TEST(Thumbnail, NeedsOnlyTheBeginningOfAFilm) {
  const std::string film = filmOf(kOrange, 3000);
  const RecordingFile file{"clip.avi", static_cast<qint64>(film.size()), {}};
  const auto needed = static_cast<std::size_t>(bytesForThumbnail(file));
  EXPECT_LE(needed, 512U * 1024);
  const QImage first = thumbnailOf(RecordingKind::Film, film.substr(0, film.size() / 3));
  EXPECT_TRUE(isLike(first.pixelColor(100, 100), kOrange));
}

TEST(Thumbnail, OfAnythingElseIsNone) {
  for (const std::string& bytes :
       {std::string(), std::string("no picture at all"), std::string(100000, '\0'),
        photoOf(kBlue).substr(0, 30), filmOf(kBlue).substr(0, 300)}) {
    EXPECT_TRUE(thumbnailOf(RecordingKind::Photo, bytes).isNull());
    EXPECT_TRUE(thumbnailOf(RecordingKind::Film, bytes).isNull());
  }
  EXPECT_TRUE(thumbnailOf(RecordingKind::Film, photoOf(kBlue)).isNull());
  EXPECT_TRUE(thumbnailOf(RecordingKind::Photo, filmOf(kBlue)).isNull());
  EXPECT_TRUE(thumbnailOf(RecordingKind::Other, photoOf(kBlue)).isNull());
}

TEST(Thumbnail, IsNotFetchedWhereThereIsNone) {
  EXPECT_EQ(bytesForThumbnail({"notes.txt", 10, {}}), 0);
  EXPECT_EQ(bytesForThumbnail({"clip.avi.part", 10, {}}), 0);
  EXPECT_GT(bytesForThumbnail({"PHOTO.JPG", 300000, {}}), 300000);
  EXPECT_EQ(bytesForThumbnail({"huge.jpg", 100 << 20, {}}), 0);
  EXPECT_GT(bytesForThumbnail({"long.avi", qint64{8} << 30, {}}), 0);
}

TEST(Thumbnail, SurvivesDamagedFiles) {
  std::mt19937 random(7);
  const std::string sound[] = {filmOf(kBlue), filmOf(kBlue, 5, "MJPG"), photoOf(kBlue)};
  for (int i = 0; i < 300; ++i) {
    for (std::string bytes : sound) {
      for (int hit = 0; hit < 20; ++hit) {
        // Mostly in the heads, which say how large everything is.
        const std::size_t end =
            hit % 2 == 0 ? std::min<std::size_t>(bytes.size(), 400) : bytes.size();
        bytes[random() % end] = static_cast<char>(random());
      }
      bytes.resize(bytes.size() - random() % (bytes.size() / 2));
      for (const RecordingKind kind : {RecordingKind::Photo, RecordingKind::Film}) {
        const QSize size = thumbnailOf(kind, bytes).size();
        EXPECT_LE(size.width(), kThumbnailSize.width());
        EXPECT_LE(size.height(), kThumbnailSize.height());
      }
    }
  }
}
