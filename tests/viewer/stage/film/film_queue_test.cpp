// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/film/film_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "support/wait.h"

namespace {

constexpr std::size_t kBytes = 100 * 4;

FilmPicture picture(std::int64_t time) {
  return {QImage(10, 10, QImage::Format_RGB32), time};
}

// Of what can be taken without waiting.
std::vector<std::int64_t> timesIn(FilmQueue& queue) {
  queue.close();
  std::vector<std::int64_t> times;
  while (const auto taken = queue.take()) times.push_back(taken->microseconds);
  return times;
}

TEST(FilmQueue, GivesTheOldestFirst) {
  FilmQueue queue(10 * kBytes);
  for (int i = 0; i < 3; ++i) queue.add(picture(i));
  EXPECT_EQ(queue.take()->microseconds, 0);
  queue.add(picture(3));
  EXPECT_EQ(timesIn(queue), (std::vector<std::int64_t>{1, 2, 3}));
  EXPECT_EQ(queue.dropped(), 0);
}

TEST(FilmQueue, DropsWhatFindsNoRoomAndCountsIt) {
  FilmQueue queue(3 * kBytes);
  for (int i = 0; i < 5; ++i) queue.add(picture(i));
  EXPECT_EQ(queue.dropped(), 2);
  EXPECT_EQ(queue.take()->microseconds, 0);
  queue.add(picture(5));
  EXPECT_EQ(queue.dropped(), 2);
  EXPECT_EQ(timesIn(queue), (std::vector<std::int64_t>{1, 2, 5}));
}

TEST(FilmQueue, HasRoomForOnePictureAlways) {
  FilmQueue queue(kBytes / 2);
  queue.add(picture(0));
  queue.add(picture(1));
  EXPECT_EQ(queue.dropped(), 1);
  EXPECT_EQ(timesIn(queue), std::vector<std::int64_t>{0});
}

TEST(FilmQueue, TellsWhenItFills) {
  FilmQueue queue(4 * kBytes);
  queue.add(picture(0));
  queue.add(picture(1));
  EXPECT_FALSE(queue.isFilling());
  queue.add(picture(2));
  EXPECT_TRUE(queue.isFilling());
  queue.take();
  EXPECT_FALSE(queue.isFilling());
}

TEST(FilmQueue, WakesWhoeverWaits) {
  FilmQueue queue(4 * kBytes);
  std::atomic<std::int64_t> taken = 0;
  std::thread taker([&] {
    while (const auto each = queue.take()) taken = each->microseconds;
  });
  for (const int each : {7, 8}) {
    queue.add(picture(each));
    EXPECT_TRUE(waitUntil([&] { return taken == each; }));
  }
  queue.close();
  taker.join();
}

TEST(FilmQueue, TakesNothingMoreOnceItIsClosed) {
  FilmQueue queue(4 * kBytes);
  queue.add(picture(0));
  queue.close();
  queue.add(picture(1));
  EXPECT_EQ(timesIn(queue), std::vector<std::int64_t>{0});
  EXPECT_EQ(queue.dropped(), 0);
}

TEST(FilmQueue, DropsWhatWaitsWhenItsTimeIsOver) {
  FilmQueue queue(4 * kBytes);
  for (int i = 0; i < 3; ++i) queue.add(picture(i));
  queue.close(FilmQueue::Clock::now() + std::chrono::hours(1));
  EXPECT_EQ(queue.take()->microseconds, 0);
  queue.close(FilmQueue::Clock::now());
  EXPECT_FALSE(queue.take());
  EXPECT_EQ(queue.dropped(), 2);
}

}  // namespace
