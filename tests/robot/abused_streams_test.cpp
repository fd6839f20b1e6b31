// SPDX-License-Identifier: Apache-2.0
// Programs that open streams of pictures and then do what no program should: it costs the robot
// little, and nobody else anything.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include "in_process_robot.h"
#include "picture_program.h"
#include "robot/services/video_device.h"
#include "support/link.h"
#include "support/wait.h"
#include "tests/chaos/footprint.h"
#include "tests/ky/raw_peer.h"

namespace robot {
namespace {

using Ky::MessageKind;
using namespace std::chrono_literals;

struct Program : PictureProgram {
  explicit Program(int port, const std::string& pictures = "exact")
      : PictureProgram(port, pictures) {}

  // Opens a stream behind the proxy's back.
  std::unique_ptr<Ky::KyStreamReceiver> open(const std::string& name) const {
    auto stream = broker->receiveStream(1);
    broker->call("KyVideoDevice", "openPictures", {name, stream->id(), "exact"});
    return stream;
  }
};

class AbusedStreams : public testing::Test {
 protected:
  AbusedStreams() {
    witness.device->subscribe("witness", 1, 9, 30);
    EXPECT_TRUE(othersSee(10));
    before = now();
  }
  ~AbusedStreams() override {
    device.reset();
    witness.device.reset();
    robot->shutdown();
  }

  static boost::shared_ptr<Ky::KyBroker> listen() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    options.patience.silence = 1000ms;
    options.patience.keep = 2000ms;
    return Ky::KyBroker::create(options);
  }
  // Of this process, which is the robot as well as the programs.
  static Footprint now() { return footprintOf(::getpid()).value(); }
  // So many new pictures; meanwhile something else goes on.
  template <class Meanwhile>
  bool othersSee(std::size_t pictures, Meanwhile meanwhile) const {
    std::set<std::pair<int, int>> seen;
    return waitUntil([&] {
      meanwhile();
      const Ky::KyValue record = witness.device->getImageRemote("witness");
      seen.insert({record[4].asInt(), record[5].asInt()});
      return seen.size() > pictures;
    });
  }
  bool othersSee(std::size_t pictures) const {
    return othersSee(pictures, [] {});
  }
  bool takesNoMoreThreads(long than) const {
    return waitUntil([&] { return now().threads <= than; });
  }
  static void expectLittleMoreMemoryThan([[maybe_unused]] const Footprint& before) {
#ifndef PERISCOPE_SANITIZED  // sanitizers have their own ways with memory
    EXPECT_LT(now().kilobytes - before.kilobytes, 80'000);
#endif
  }
  // The largest pictures, as they are.
  static bool openPictures(RawPeer& peer, const std::string& id) {
    if (!peer.join(id)) return false;
    peer.send(Ky::callMessage(1, "KyVideoDevice", "subscribe", {"me", 3, 9, 30}, 3000ms));
    const auto subscribed = peer.receive();
    peer.send(Ky::callMessage(2, "KyVideoDevice", "openPictures", {"me", 7, "exact"}, 3000ms));
    return subscribed && subscribed->kind == MessageKind::Result;
  }

  boost::shared_ptr<Ky::KyBroker> robot = listen();
  boost::shared_ptr<VideoDevice> device =
      Ky::KyModule::createModule<VideoDevice>(robot, InProcessRobot::cameras());
  Program witness{robot->address().port};
  Footprint before;
};

TEST_F(AbusedStreams, OfViewersThatReadNoMoreDoNotPileUp) {
  std::vector<std::unique_ptr<RawPeer>> viewers;
  for (int i = 0; i < 4; ++i) {
    viewers.push_back(std::make_unique<RawPeer>(robot->address()));
    ASSERT_TRUE(openPictures(*viewers.back(), std::to_string(i)));
  }
  EXPECT_TRUE(othersSee(15));
  const Footprint opened = now();
  EXPECT_TRUE(othersSee(90, [&] {
    for (const auto& viewer : viewers) viewer->send(Ky::pingMessage(1));  // it lives
  }));
  EXPECT_LE(now().threads, opened.threads);
  expectLittleMoreMemoryThan(opened);
}

TEST_F(AbusedStreams, OfViewersThatAreKilledInMidPictureNothingIsLeft) {
  for (int i = 0; i < 30; ++i) {
    RawPeer viewer(robot->address());
    ASSERT_TRUE(openPictures(viewer, std::to_string(i)));
    zmq::message_t answer, piece;
    ASSERT_TRUE(viewer.socket().recv(answer));
    ASSERT_TRUE(viewer.socket().recv(piece)) << "there is more of that picture";
  }
  EXPECT_TRUE(othersSee(30));
  EXPECT_TRUE(takesNoMoreThreads(before.threads)) << now().threads << " of " << before.threads;
  expectLittleMoreMemoryThan(before);
}

TEST_F(AbusedStreams, OfOneSubscriptionOnlyTheNewestIsOpen) {
  Program greedy(robot->address().port);
  greedy.device->subscribe("me", 2, 9, 30);
  std::vector<std::unique_ptr<Ky::KyStreamReceiver>> streams;
  streams.push_back(greedy.open("me"));
  const Footprint opened = now();
  for (int i = 1; i < 100; ++i) streams.push_back(greedy.open("me"));
  EXPECT_TRUE(takesNoMoreThreads(opened.threads)) << now().threads << " of " << opened.threads;
  EXPECT_TRUE(streams.back()->next(10s));
  EXPECT_EQ(streams.back()->ended(), "");
  streams.pop_back();
  for (const auto& stream : streams) EXPECT_EQ(stream->ended(), "it was ended");
  EXPECT_TRUE(othersSee(30));
  expectLittleMoreMemoryThan(opened);
}

TEST_F(AbusedStreams, OfManySubscriptionsTheNewestOfEachAreOpenUntilTheProgramLeaves) {
  constexpr std::size_t kSubscriptions = 32;
  auto greedy = std::make_unique<Program>(robot->address().port);
  for (std::size_t i = 0; i < kSubscriptions; ++i)
    greedy->device->subscribe(std::to_string(i), 1, 9, 30);
  const Footprint subscribed = now();
  std::vector<std::unique_ptr<Ky::KyStreamReceiver>> streams;
  for (std::size_t i = 0; i < 100; ++i)
    streams.push_back(greedy->open(std::to_string(i % kSubscriptions)));
  const long most = subscribed.threads + static_cast<long>(kSubscriptions);
  EXPECT_TRUE(takesNoMoreThreads(most)) << now().threads << " of " << most;
  for (std::size_t i = streams.size() - kSubscriptions; i < streams.size(); ++i)
    EXPECT_TRUE(streams[i]->next(10s)) << i;
  EXPECT_TRUE(othersSee(30));
  streams.clear();
  greedy.reset();
  EXPECT_TRUE(takesNoMoreThreads(before.threads)) << now().threads << " of " << before.threads;
  expectLittleMoreMemoryThan(before);
}

// A user who can't decide.
TEST_F(AbusedStreams, OfManyChangesOfTheResolutionTheLastOneCounts) {
  Link link(robot->address().port);
  link.set({.delay = 5ms, .bitsPerSecond = 4'000'000});
  const Program viewer(link.port(), "automatic");
  viewer.device->subscribe("me", 2, 9, 30);
  const auto picture = [&] { return viewer.device->getImageRemote("me"); };
  ASSERT_TRUE(waitUntil([&] {
    picture();
    const auto streams = viewer.broker->statistics().streams;
    return !streams.empty() && streams.front().find("H.264") == 0;
  }));
  std::atomic<bool> isDone{false};
  std::string error = "no error";
  std::thread watching([&] {
    while (!isDone && error == "no error") {
      error = errorText(picture);
      std::this_thread::sleep_for(5ms);
    }
  });
  for (int i = 1; i <= 100; ++i) EXPECT_TRUE(viewer.device->setResolution("me", i % 3)) << i;
  isDone = true;
  watching.join();
  EXPECT_EQ(error, "no error");
  EXPECT_TRUE(waitUntil([&] { return picture()[0].asInt() == 320; }));
  for (int i = 0; i < 60; ++i) EXPECT_EQ(picture()[0].asInt(), 320) << i;
  EXPECT_TRUE(othersSee(30));
}

}  // namespace
}  // namespace robot
