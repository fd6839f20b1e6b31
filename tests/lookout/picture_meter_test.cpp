// SPDX-License-Identifier: Apache-2.0
#include "lookout/picture_meter.h"

#include <gtest/gtest.h>

using Lookout::oldestLivePicture;
using Lookout::PictureReading;
using Lookout::PictureState;
using namespace std::chrono_literals;

namespace {

// A widget that paints pictures at moments that the test chooses, and a meter that looks at it four
// times a second.
class Picture {
 public:
  using Duration = Lookout::PictureSample::Time::duration;

  explicit Picture(double frameRateWanted = 5) { widget.frameRateWanted = frameRateWanted; }

  // Lets time pass with new pictures this far apart; none for zero.
  PictureReading pass(Duration time, Duration period = 0ms) {
    const auto end = fNow + time;
    auto next = fNow + period;
    while (fNow < end) {
      fNow += 250ms;
      for (; period > 0ms && next <= fNow; next += period) paint(next);
      fReading = fMeter.update(widget, fNow);
    }
    return fReading;
  }
  PictureReading play() {
    widget.playing = true;
    return fReading = fMeter.update(widget, fNow);
  }

  Lookout::PictureSample widget;

 private:
  void paint(Lookout::PictureSample::Time time) {
    ++widget.framesPainted;
    widget.lastPainted = time;
  }

  Lookout::PictureMeter fMeter;
  Lookout::PictureSample::Time fNow{1h};
  PictureReading fReading;
};

}  // namespace

TEST(PictureMeter, TellsTheRateOfTheNewPictures) {
  Picture picture(30);
  picture.play();
  const PictureReading fast = picture.pass(5s, 40ms);
  EXPECT_EQ(fast.state, PictureState::Live);
  EXPECT_NEAR(fast.framesPerSecond, 25, 0.01);
  EXPECT_NEAR(picture.pass(5s, 400ms).framesPerSecond, 2.5, 0.01);
}

TEST(PictureMeter, FollowsAChangeOfRateWithinThreeSeconds) {
  Picture picture(30);
  picture.play();
  picture.pass(10s, 40ms);
  EXPECT_NEAR(picture.pass(3s, 200ms).framesPerSecond, 5, 0.01);
}

TEST(PictureMeter, TellsTheRateOfASlowPicture) {
  Picture picture(1);
  picture.play();
  const PictureReading slow = picture.pass(20s, 2400ms);
  EXPECT_EQ(slow.state, PictureState::Live);
  EXPECT_NEAR(slow.framesPerSecond, 1 / 2.4, 0.01);
}

TEST(PictureMeter, TellsTheAgeByTheDesktopsClock) {
  Picture picture;
  picture.play();
  EXPECT_FALSE(picture.pass(500ms).age.has_value());
  picture.pass(1s, 500ms);
  EXPECT_EQ(picture.pass(750ms).age, 750ms);
}

TEST(PictureMeter, CallsAPictureStalledThatIsOlderThanASecond) {
  Picture picture(30);
  picture.play();
  picture.pass(3s, 50ms);
  EXPECT_EQ(picture.pass(1s).state, PictureState::Live);
  const PictureReading stalled = picture.pass(2s);
  EXPECT_EQ(stalled.state, PictureState::Stalled);
  EXPECT_EQ(stalled.framesPerSecond, 0);
  EXPECT_EQ(stalled.standstill, 3s);
  EXPECT_EQ(stalled.age, 3s);
}

TEST(PictureMeter, IsPatientAtLowFrameRates) {
  EXPECT_EQ(oldestLivePicture(30), 1s);
  EXPECT_EQ(oldestLivePicture(5), 1s);
  EXPECT_EQ(oldestLivePicture(2), 1250ms);
  EXPECT_EQ(oldestLivePicture(1), 2500ms);
  EXPECT_EQ(oldestLivePicture(0), 1s);
  EXPECT_EQ(oldestLivePicture(1e-300), 1h);
  Picture picture(1);
  picture.play();
  picture.pass(5s, 1s);
  EXPECT_EQ(picture.pass(2500ms).state, PictureState::Live);
  EXPECT_EQ(picture.pass(250ms).state, PictureState::Stalled);
}

TEST(PictureMeter, IsLiveAgainWithTheNextNewPictureAndMeasuresAnew) {
  Picture picture;
  picture.play();
  picture.pass(3s, 200ms);
  picture.pass(10s);
  const PictureReading first = picture.pass(250ms, 250ms);
  EXPECT_EQ(first.state, PictureState::Live);
  EXPECT_EQ(first.framesPerSecond, 0) << "one picture has no rate";
  EXPECT_NEAR(picture.pass(1s, 200ms).framesPerSecond, 5, 0.01);
}

TEST(PictureMeter, KnowsWhetherItWasEverPlayed) {
  Picture picture;
  EXPECT_EQ(picture.pass(5s).state, PictureState::NotPlaying);
  picture.play();
  picture.pass(2s, 200ms);
  picture.widget.playing = false;
  const PictureReading paused = picture.pass(5s);
  EXPECT_EQ(paused.state, PictureState::Paused);
  EXPECT_EQ(paused.framesPerSecond, 0);
  EXPECT_EQ(paused.age, 5s);
}

TEST(PictureMeter, WaitsForTheFirstPictureAndThenMissesIt) {
  Picture picture;
  EXPECT_EQ(picture.play().state, PictureState::Waiting);
  EXPECT_EQ(picture.pass(1s).state, PictureState::Waiting);
  const PictureReading missing = picture.pass(1s);
  EXPECT_EQ(missing.state, PictureState::Stalled);
  EXPECT_EQ(missing.standstill, 2s);
  EXPECT_FALSE(missing.age.has_value());
}

TEST(PictureMeter, GivesAPictureTimeAfterAPause) {
  Picture picture;
  picture.play();
  picture.pass(2s, 200ms);
  picture.widget.playing = false;
  picture.pass(60s);
  EXPECT_EQ(picture.play().state, PictureState::Waiting);
  EXPECT_EQ(picture.pass(750ms).state, PictureState::Waiting);
  const PictureReading live = picture.pass(2s, 200ms);
  EXPECT_EQ(live.state, PictureState::Live);
  EXPECT_NEAR(live.framesPerSecond, 5, 0.01) << "the pause counts as no time";
}

TEST(PictureMeter, SaysNothingOfAPictureThatNobodyCanSee) {
  Picture picture;
  picture.play();
  picture.pass(2s, 200ms);
  picture.widget.visible = false;
  EXPECT_EQ(picture.pass(60s).state, PictureState::None);
  picture.widget.visible = true;
  EXPECT_EQ(picture.pass(1s).state, PictureState::Live);
  EXPECT_EQ(picture.pass(500ms).state, PictureState::Stalled);
}

TEST(PictureMeter, GivesAPictureTimeWhenTheRateAskedForRises) {
  Picture picture(1);
  picture.play();
  picture.pass(5s, 1s);
  picture.pass(2s);
  picture.widget.frameRateWanted = 30;
  EXPECT_EQ(picture.pass(1s).state, PictureState::Live);
  EXPECT_EQ(picture.pass(500ms).state, PictureState::Stalled);
}
