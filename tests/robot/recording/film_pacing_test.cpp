// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/film_pacing.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

constexpr std::int64_t kStart = 1'700'000'000'000'000;

// Numbers of the pictures that become the film's frames, in order, when they come at these times.
std::vector<int> film(int fps, const std::vector<std::int64_t>& times) {
  robot::FilmPacing pacing(fps);
  std::vector<int> frames;
  int shown = -1;
  for (int i = 0; i < static_cast<int>(times.size()); ++i) {
    const auto step = pacing.next(times[static_cast<std::size_t>(i)]);
    for (int k = 0; k < step.repeats; ++k) frames.push_back(shown);
    if (!step.isTaken) continue;
    shown = i;
    frames.push_back(i);
  }
  return frames;
}

std::vector<std::int64_t> timesAt(double rate, int count, std::int64_t jitter = 0) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int64_t> shift(-jitter, jitter);
  std::vector<std::int64_t> times;
  for (int i = 0; i < count; ++i)
    times.push_back(kStart + static_cast<std::int64_t>(i * 1e6 / rate) +
                    (i == 0 ? 0 : shift(random)));
  return times;
}

std::vector<int> countTo(int end, int step = 1) {
  std::vector<int> numbers;
  for (int i = 0; i < end; i += step) numbers.push_back(i);
  return numbers;
}

TEST(FilmPacing, TakesEveryPictureOnceOfACameraOfTheFilmsRate) {
  for (const int fps : {1, 5, 15, 30}) EXPECT_EQ(film(fps, timesAt(fps, 500)), countTo(500)) << fps;
}

TEST(FilmPacing, TakesEveryPictureOnceWhileEachComesWithinAQuarterOfItsTime) {
  for (const int fps : {5, 15, 30})
    EXPECT_EQ(film(fps, timesAt(fps, 500, 1000000 / fps / 4 - 2)), countTo(500)) << fps;
}

TEST(FilmPacing, TakesEverySecondPictureOfACameraTwiceAsFast) {
  for (const int fps : {5, 15, 30})
    EXPECT_EQ(film(fps, timesAt(2 * fps, 500, 1000000 / fps / 4 - 2)), countTo(500, 2)) << fps;
}

TEST(FilmPacing, DoublesNoPictureOfACameraThatIsFaster) {
  for (const double rate : {16.0, 18.0, 24.0, 25.0, 29.97, 60.0}) {
    const auto frames = film(15, timesAt(rate, 500));
    for (std::size_t i = 1; i < frames.size(); ++i) EXPECT_LT(frames[i - 1], frames[i]) << rate;
    EXPECT_NEAR(static_cast<double>(frames.size()), 500 * 15 / rate, 1) << rate;
  }
}

TEST(FilmPacing, ShowsThePicturesOfASlowerCameraForLonger) {
  EXPECT_EQ(film(15, timesAt(5, 4)), (std::vector<int>{0, 0, 0, 1, 1, 1, 2, 2, 2, 3}));
}

TEST(FilmPacing, KeepsTimeAfterAPictureThatIsMissing) {
  auto times = timesAt(10, 8);
  times.erase(times.begin() + 3);
  EXPECT_EQ(film(10, times), (std::vector<int>{0, 1, 2, 2, 3, 4, 5, 6}));
}

TEST(FilmPacing, StandsStillForTwoSecondsAtMost) {
  auto times = timesAt(10, 3);
  for (const std::int64_t gap : {2'500'000LL, 3'600'000'000LL, 1'000'000'000'000'000LL}) {
    auto all = times;
    for (const int step : {0, 100'000, 200'000}) all.push_back(times.back() + gap + step);
    std::vector<int> expected{0, 1, 2};
    expected.insert(expected.end(), 20, 2);
    expected.insert(expected.end(), {3, 4, 5});
    EXPECT_EQ(film(10, all), expected) << gap;
  }
}

TEST(FilmPacing, GoesOnWhenTheComputersClockIsSetBack) {
  auto times = timesAt(10, 6);
  for (std::size_t i = 3; i < times.size(); ++i) times[i] -= 3'600'000'000;
  EXPECT_EQ(film(10, times), countTo(6));
}

}  // namespace
