// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/frame_feed.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

Frame frameOf(std::size_t bytes) {
  Frame frame;
  frame.pixels = Ky::KyBinary(std::vector<std::uint8_t>(bytes));
  return frame;
}

TEST(FrameFeed, HasNoPictureBeforeTheFirst) {
  const FrameFeed feed;
  EXPECT_EQ(feed.newest(), nullptr);
  EXPECT_TRUE(feed.recent().empty());
}

TEST(FrameFeed, NumbersPicturesAsTheyCome) {
  FrameFeed feed;
  feed.publish(frameOf(1));
  feed.publish(frameOf(1));
  EXPECT_EQ(feed.newest()->number, 2U);
}

TEST(FrameFeed, KeepsTheNewestAloneWhileNobodyWatches) {
  FrameFeed feed;
  for (int i = 0; i < 5; ++i) feed.publish(frameOf(1));
  EXPECT_EQ(feed.recent().size(), 1U);
}

TEST(FrameFeed, KeepsFewPicturesWhileSomebodyWatches) {
  FrameFeed feed;
  auto watch = feed.watch([] {});
  for (std::size_t i = 0; i < 2 * FrameFeed::kMost; ++i) feed.publish(frameOf(1));
  EXPECT_EQ(feed.recent().size(), FrameFeed::kMost);
  EXPECT_EQ(feed.recent().front()->number, FrameFeed::kMost + 1);
  watch.reset();
  EXPECT_EQ(feed.recent().size(), 1U);
}

TEST(FrameFeed, KeepsNoMoreThanItsBytes) {
  FrameFeed feed;
  const auto watch = feed.watch([] {});
  for (int i = 0; i < 5; ++i) feed.publish(frameOf(FrameFeed::kMostBytes / 2));
  EXPECT_EQ(feed.recent().size(), 2U);
}

TEST(FrameFeed, TellsItsWatchersOfEachPictureUntilTheyGo) {
  FrameFeed feed;
  int told = 0;
  auto watch = feed.watch([&told] { ++told; });
  feed.publish(frameOf(1));
  EXPECT_EQ(told, 1);
  watch.reset();
  feed.publish(frameOf(1));
  EXPECT_EQ(told, 1);
}

TEST(FrameFeed, MayGoBeforeItsWatchers) {
  auto feed = std::make_unique<FrameFeed>();
  auto watch = feed->watch([] {});
  feed.reset();
  watch.reset();
}

TEST(FrameFeed, ServesThreadsAtTheSameTime) {
  FrameFeed feed;
  std::atomic<int> told = 0;
  std::thread camera([&feed] {
    for (int i = 0; i < 500; ++i) feed.publish(frameOf(16));
  });
  for (int i = 0; i < 50; ++i) {
    const auto watch = feed.watch([&told] { ++told; });
    for (const FramePtr& frame : feed.recent()) EXPECT_EQ(frame->pixels.size(), 16U);
  }
  camera.join();
  EXPECT_EQ(feed.newest()->number, 500U);
}

}  // namespace
