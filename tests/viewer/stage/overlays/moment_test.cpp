// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/moment.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr std::int64_t kMs = 1000;
constexpr std::int64_t kStart = 1700000000000000;
constexpr std::int64_t kPeriod = 33333;  // between two frames

// What a robot's camera and its detectors bring, in order. Times are milliseconds from the start.
class Feed {
 public:
  void frameAt(std::int64_t time) { frameAtMicroseconds(kStart + time * kMs); }
  void frameAtMicroseconds(std::int64_t time) {
    auto frame = std::make_shared<Frame>();
    frame->timestamp = time;
    frame->number = ++fNumber;
    frames.push_back(frame);
    if (frames.size() > 32) frames.erase(frames.begin());
  }
  // 30 a second.
  void nextFrame(std::int64_t early = 0) {
    frameAtMicroseconds(kStart + fNext++ * kPeriod - early * kMs);
  }
  // What the source holds from now on.
  void put(const std::string& key, std::int64_t seen, int items = 1) {
    putSeen(key, kStart + seen * kMs, items);
  }
  void putSeen(const std::string& key, std::int64_t seen, int items = 1) {
    remove(key);
    sources.push_back({key, seen, std::vector<displayObject>(static_cast<std::size_t>(items))});
  }
  void remove(const std::string& key) {
    std::erase_if(sources, [&](const OverlaySource& source) { return source.key == key; });
  }
  Moment::Shown look(const std::set<std::string>& hidden = {}) {
    return moment.look(frames, sources, hidden);
  }

  Moment moment;
  std::vector<FramePtr> frames;
  std::vector<OverlaySource> sources;

 private:
  std::uint64_t fNumber = 0;
  std::int64_t fNext = 0;
};

std::int64_t timeOf(const Moment::Shown& shown) {
  return (shown.frame->timestamp - kStart) / kMs;
}

// Detections of every third frame, each there `late` frames later. Looks at each frame.
std::vector<Moment::Shown> played(Feed& feed, int frames, int late, int jitter = 0) {
  std::vector<Moment::Shown> shown;
  for (int i = 0; i < frames; ++i) {
    feed.nextFrame(jitter == 0 ? 0 : i * 7 % (2 * jitter + 1) - jitter);
    const auto seen = static_cast<int>(feed.frames.size()) - 1 - late;
    if (i >= late && (i - late) % 3 == 0 && seen >= 0)
      feed.putSeen("BallDetected", feed.frames[static_cast<std::size_t>(seen)]->timestamp);
    shown.push_back(feed.look());
  }
  return shown;
}

TEST(Moment, ShowsNothingBeforeTheFirstFrame) {
  Feed feed;
  feed.put("BallDetected", 0);
  const Moment::Shown shown = feed.look();
  EXPECT_EQ(shown.frame, nullptr);
  ASSERT_EQ(shown.sources.size(), 1u);
  EXPECT_EQ(shown.sources[0].set->items.size(), 1u);
}

TEST(Moment, ShowsTheNewestFrameWithoutDetections) {
  Feed feed;
  feed.putSeen("figures of a program", 0);
  for (int i = 0; i < 60; ++i) {
    feed.nextFrame();
    const Moment::Shown shown = feed.look();
    EXPECT_EQ(shown.frame, feed.frames.back());
    EXPECT_EQ(shown.behind, 0);
    EXPECT_FALSE(shown.sources.at(0).isOnFrame);
    EXPECT_EQ(shown.sources.at(0).set->items.size(), 1u);
  }
}

TEST(Moment, HoldsThePictureUntilItsDetectionIsThere) {
  Feed feed;
  feed.frameAt(0);
  feed.look();
  feed.put("BallDetected", 0, 0);
  feed.sources.back().seen = 0;
  feed.look();
  feed.frameAt(33);
  feed.look();
  feed.frameAt(66);
  feed.look();
  feed.frameAt(100);
  feed.put("BallDetected", 33);
  const Moment::Shown shown = feed.look();
  EXPECT_EQ(timeOf(shown), 33);
  EXPECT_EQ(shown.behind, 67 * kMs);
  EXPECT_TRUE(shown.sources[0].isOnFrame);
  EXPECT_EQ(shown.sources[0].set->seen, kStart + 33 * kMs);
  EXPECT_EQ(shown.sources[0].age, 0);
}

struct Course {
  int late;    // frames
  int jitter;  // milliseconds, to either side
};

class MomentOfCourse : public testing::TestWithParam<Course> {};

TEST_P(MomentOfCourse, ShowsEachDetectionOnItsFrameAndEachFrameOnce) {
  Feed feed;
  const auto shown = played(feed, 300, GetParam().late, GetParam().jitter);
  int onTheirFrames = 0;
  for (std::size_t i = 60; i < shown.size(); ++i) {
    EXPECT_EQ(shown[i].frame->number, shown[i - 1].frame->number + 1) << i;
    EXPECT_EQ(shown[i].frame->number + static_cast<unsigned>(GetParam().late), i + 1) << i;
    const Moment::Source& source = shown[i].sources.at(0);
    ASSERT_GT(source.set->seen, 0) << i;
    EXPECT_LT(source.set->seen, shown[i].frame->timestamp + 2 * kPeriod);
    EXPECT_LT(source.age, 3 * kPeriod) << i;
    EXPECT_FALSE(source.isOld);
    onTheirFrames += source.age == 0 ? 1 : 0;
  }
  EXPECT_EQ(onTheirFrames, 80);
}

std::string nameOf(const testing::TestParamInfo<Course>& info) {
  return std::to_string(info.param.late) + "FramesLate" +
         (info.param.jitter > 0 ? "AndUneven" : "");
}

INSTANTIATE_TEST_SUITE_P(Courses, MomentOfCourse,
                         testing::Values(Course{0, 0}, Course{1, 0}, Course{2, 0}, Course{4, 0},
                                         Course{9, 0}, Course{1, 4}, Course{3, 4}, Course{6, 4}),
                         nameOf);

// The detector's own pictures lie between those at hand, which come unevenly.
TEST(Moment, ShowsEachFrameOnceWhereADetectionBelongsToNone) {
  for (const int between : {4, 8, 12, 16, 20, 24, 28}) {
    Feed feed;
    std::uint64_t last = 0;
    for (int i = 0; i < 300; ++i) {
      feed.nextFrame(i * 7 % 9 - 4);
      if (i > 9 && i % 3 == 0) {
        feed.putSeen("BallDetected", kStart + (i - 2) * kPeriod - between * kMs);
      }
      const std::uint64_t number = feed.look().frame->number;
      if (i > 60) {
        EXPECT_EQ(number, last + 1) << between;
      }
      last = number;
    }
  }
}

TEST(Moment, HoldsThePictureHalfASecondAtMost) {
  Feed feed;
  const auto shown = played(feed, 200, 24);
  for (std::size_t i = 100; i < shown.size(); ++i) {
    EXPECT_EQ(shown[i].behind, 15 * kPeriod) << i;  // of 800 ms
    EXPECT_EQ(shown[i].frame->number, shown[i - 1].frame->number + 1);
    // What was seen before is shown while it is the newest that there is.
    EXPECT_GT(shown[i].sources.at(0).age, 0);
  }
}

TEST(Moment, HoldsThePictureNoLongerThanTheFeedDoes) {
  Feed feed;
  for (int i = 0; i < 60; ++i) {
    feed.nextFrame();
    if (i % 3 == 0 && i >= 9) feed.putSeen("BallDetected", kStart + (i - 9) * kPeriod);
    const std::vector<FramePtr> few(feed.frames.end() - std::min(i + 1, 4), feed.frames.end());
    const Moment::Shown shown = feed.moment.look(few, feed.sources);
    EXPECT_GE(shown.frame->timestamp, few.front()->timestamp);
    if (i > 12) {
      EXPECT_EQ(shown.frame, few.front());
    }
  }
}

TEST(Moment, ShowsTheNewestFrameTwoSecondsAfterTheLastDetection) {
  Feed feed;
  played(feed, 90, 3);
  int held = 0;
  for (int i = 0; i < 90; ++i) {
    feed.nextFrame();
    const Moment::Shown shown = feed.look();
    held += shown.behind > 0 ? 1 : 0;
    if (i >= 60) {
      EXPECT_EQ(shown.frame, feed.frames.back()) << i;
    }
    // Until then it has not gone yet, and says how old it is.
    if (i >= 30) {
      EXPECT_TRUE(shown.sources.at(0).isOld);
    }
  }
  EXPECT_GT(held, 30);
}

TEST(Moment, ShowsTheNewestFrameAtOnceWhereDetectionsAreHiddenOrEnd) {
  Feed feed;
  played(feed, 90, 3);
  feed.nextFrame();
  EXPECT_GT(feed.look().behind, 0);
  const Moment::Shown hidden = feed.look({"BallDetected"});
  EXPECT_EQ(hidden.behind, 0);
  EXPECT_TRUE(hidden.sources.at(0).isHidden);
  EXPECT_GT(feed.look().behind, 0);
  feed.remove("BallDetected");
  const Moment::Shown ended = feed.look();
  EXPECT_EQ(ended.behind, 0);
  EXPECT_TRUE(ended.sources.empty());
}

TEST(Moment, ShowsNewestFiguresOnTheNewestFrameWhereTheUserWantsSo) {
  Feed feed;
  feed.moment.setOnFrame(false);
  const auto shown = played(feed, 90, 3);
  for (std::size_t i = 30; i < shown.size(); ++i) {
    EXPECT_EQ(shown[i].behind, 0);
    EXPECT_FALSE(shown[i].sources.at(0).isOnFrame);
    EXPECT_GE(shown[i].sources.at(0).age, 3 * kPeriod);
  }
}

TEST(Moment, NeverGoesBackButForALaterDetection) {
  Feed feed;
  std::int64_t last = 0;
  int backwards = 0;
  // The detector becomes slower twice, and quick again.
  for (const int late : {1, 5, 1, 8, 1}) {
    for (const Moment::Shown& shown : played(feed, 120, late)) {
      backwards += shown.frame->timestamp < last ? 1 : 0;
      last = shown.frame->timestamp;
    }
  }
  EXPECT_GE(backwards, 1);
  EXPECT_LE(backwards, 3);
}

TEST(Moment, CatchesUpFrameByFrameWhenTheDetectorBecomesQuick) {
  Feed feed;
  played(feed, 120, 8);
  const auto shown = played(feed, 240, 1);
  for (std::size_t i = 1; i < shown.size(); ++i) {
    const auto step = shown[i].frame->number - shown[i - 1].frame->number;
    EXPECT_GE(step, 1u) << i;
    EXPECT_LE(step, 2u) << i;
  }
  EXPECT_EQ(shown.back().behind, kPeriod);
}

TEST(Moment, DoesNotHoldThePictureForWhatWasThereBeforeItLooked) {
  Feed feed;
  for (int i = 0; i < 20; ++i) feed.nextFrame();
  feed.putSeen("LandmarkDetected", feed.frames[3]->timestamp);
  const Moment::Shown shown = feed.look();
  EXPECT_EQ(shown.behind, 0);
  EXPECT_TRUE(shown.sources.at(0).isOnFrame);
  EXPECT_TRUE(shown.sources.at(0).isOld);
  EXPECT_NEAR(static_cast<double>(shown.sources.at(0).age), 16.0 * kPeriod, 1);
}

TEST(Moment, DoesNotHoldThePictureForWhatCameWhileNobodyLooked) {
  Feed feed;
  played(feed, 60, 1);
  for (int i = 0; i < 30; ++i) {
    feed.nextFrame();
    feed.putSeen("BallDetected", feed.frames.back()->timestamp);
  }
  feed.nextFrame();
  for (int i = 0; i < 14; ++i) feed.nextFrame();
  EXPECT_EQ(feed.look().behind, kPeriod);
  EXPECT_EQ(played(feed, 60, 1).back().behind, kPeriod);
}

TEST(Moment, BeginsAnewWhenTheClockJumps) {
  for (const std::int64_t jump : {-3600000, 3600000, -50}) {
    Feed feed;
    played(feed, 90, 3);
    const std::int64_t now = 3000 + jump;
    feed.frameAt(now);
    EXPECT_EQ(feed.look().frame, feed.frames.back()) << jump;
    feed.put("BallDetected", now);
    feed.look();
    // Only what came after the jump is compared.
    feed.frameAt(now + 33);
    feed.frameAt(now + 66);
    feed.put("BallDetected", now + 33);
    const Moment::Shown shown = feed.look();
    EXPECT_EQ(timeOf(shown), now + 33) << jump;
    EXPECT_EQ(shown.sources.at(0).set->seen, shown.frame->timestamp);
  }
}

TEST(Moment, DrawsWhatAnotherClockDatesAsItComes) {
  Feed feed;
  feed.frameAt(0);
  feed.look();
  for (const std::int64_t seen : {kStart + 3600 * 1000 * kMs, std::int64_t(-5), INT64_MAX}) {
    feed.putSeen("BallDetected", seen);
    const Moment::Shown shown = feed.look();
    EXPECT_EQ(shown.behind, 0);
    EXPECT_FALSE(shown.sources.at(0).isOnFrame);
    EXPECT_FALSE(shown.sources.at(0).isOld);
    EXPECT_EQ(shown.sources.at(0).set->items.size(), 1u);
  }
}

TEST(Moment, LetsAFigureGoOnTheFrameWhereItWasGone) {
  Feed feed;
  played(feed, 61, 4);
  // Shown is frame 57 of 61, counted from 1, with what was seen in it; then nothing is seen.
  feed.putSeen("BallDetected", 0, 0);
  for (unsigned i = 58; i < 70; ++i) {
    feed.nextFrame();
    const Moment::Shown shown = feed.look();
    EXPECT_EQ(shown.frame->number, i);
    EXPECT_TRUE(shown.sources.at(0).set->items.empty()) << i;
  }
}

TEST(Moment, ShowsTheDetectionThatIsNearestToThePicture) {
  Feed feed;
  const auto seenAfter = [&](std::int64_t time) {
    feed.frameAt(time);
    const Moment::Shown shown = feed.look();
    EXPECT_EQ(timeOf(shown), time - 300);
    return (shown.sources[0].set->seen - kStart) / kMs;
  };
  feed.put("BallDetected", 0);
  for (const int time : {0, 100, 200, 300, 400}) {
    feed.frameAt(time);
    feed.look();
  }
  // One that is late, and one that is quick, so that both are at hand for the pictures between.
  feed.put("BallDetected", 200);
  EXPECT_EQ(seenAfter(500), 200);
  feed.put("BallDetected", 500);
  EXPECT_EQ(seenAfter(600), 200);
  EXPECT_EQ(seenAfter(700), 500);
  EXPECT_EQ(seenAfter(800), 500);
}

TEST(Moment, TakesTheDetectorsRhythmForNoAge) {
  Feed feed;
  // Faces are looked for every half second.
  for (int i = 0; i < 150; ++i) {
    feed.nextFrame();
    if (i % 15 == 5) feed.putSeen("FaceDetected", kStart + (i - 3) * kPeriod);
    const Moment::Shown shown = feed.look();
    if (i > 60) {
      EXPECT_FALSE(shown.sources.at(0).isOld) << i;
    }
  }
  // And then no more.
  for (int i = 0; i < 12; ++i) feed.nextFrame();
  EXPECT_FALSE(feed.look().sources.at(0).isOld);
  for (int i = 0; i < 30; ++i) feed.nextFrame();
  EXPECT_TRUE(feed.look().sources.at(0).isOld);
}

TEST(Moment, KeepsSourcesApart) {
  Feed feed;
  for (int i = 0; i < 90; ++i) {
    feed.nextFrame();
    if (i >= 6) feed.putSeen("FaceDetected", kStart + (i - 6) * kPeriod);
    if (i >= 2) feed.putSeen("BallDetected", kStart + (i - 2) * kPeriod);
    feed.putSeen("figures", 0, i);
    const Moment::Shown shown = feed.look();
    if (i < 10) continue;
    ASSERT_EQ(shown.sources.size(), 3u);
    EXPECT_EQ(shown.behind, 6 * kPeriod);
    EXPECT_EQ(shown.sources[0].set->key, "BallDetected");
    EXPECT_EQ(shown.sources[0].set->seen, shown.frame->timestamp);
    EXPECT_EQ(shown.sources[1].set->seen, shown.frame->timestamp);
    EXPECT_EQ(shown.sources[2].set->items.size(), static_cast<std::size_t>(i));
  }
}

}  // namespace
