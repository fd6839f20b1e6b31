// SPDX-License-Identifier: Apache-2.0
// What a link does to the bytes that cross it.
#include "support/link.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <future>
#include <string>

#include "support/wait.h"

namespace {

using namespace std::chrono_literals;
using zu::os::UniqueFd;

constexpr timeval kLimit{20, 0};  // only there so that a broken link fails instead of hanging
constexpr LinkSettings kHeldBack{.delay = 1h};

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

void bound(int fd) {
  setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &kLimit, sizeof kLimit);
  setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &kLimit, sizeof kLimit);
}

// One end of a connection.
class End {
 public:
  explicit End(int fd) : fFd(fd) {
    if (fd >= 0) bound(fd);
  }
  static End connectTo(int port, int* error = nullptr) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const int result = connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (error != nullptr) *error = result == 0 ? 0 : errno;
    return End(fd);
  }

  bool write(const std::string& bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t count = send(fFd.get(), &bytes[done], bytes.size() - done, MSG_NOSIGNAL);
      if (count <= 0) return false;
      done += static_cast<std::size_t>(count);
    }
    return true;
  }
  // As many bytes as fit in while nobody reads.
  std::size_t writeAllThatFits(std::size_t most) const {
    const std::string bytes(64 << 10, 'x');
    std::size_t done = 0;
    const auto fits = [&] {
      const ssize_t count = send(fFd.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
      if (count > 0) done += static_cast<std::size_t>(count);
      return count > 0;
    };
    while (done < most && waitUntil(fits, 200ms)) {
    }
    return done;
  }
  // What comes before the end, and at most so many bytes of it.
  std::string read(std::size_t most) const {
    std::string result(most, '\0');
    std::size_t done = 0;
    while (done < most) {
      const ssize_t count = recv(fFd.get(), &result[done], most - done, 0);
      if (count <= 0) break;
      done += static_cast<std::size_t>(count);
    }
    result.resize(done);
    return result;
  }
  // Why no more can be read: 0 at the end of the stream, -1 when something is there.
  int whyEnded() const {
    char byte = 0;
    const ssize_t count = recv(fFd.get(), &byte, 1, 0);
    return count > 0 ? -1 : count == 0 ? 0 : errno;
  }
  bool isEmpty() const {
    char byte = 0;
    return recv(fFd.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
  }
  void finish() const { shutdown(fFd.get(), SHUT_WR); }
  void close() { fFd = UniqueFd(); }

 private:
  UniqueFd fFd;
};

struct Robot {
  Robot() : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    bound(listener.get());
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), size);
    listen(listener.get(), 8);
    getsockname(listener.get(), reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
  }
  End accept() const { return End(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC)); }

  UniqueFd listener;
  int port = 0;
};

struct LinkBetween : testing::Test {
  Robot server;
  Link link{server.port};
  End viewer = End::connectTo(link.port());
  End robot = server.accept();
};

// No two stretches of it are alike.
std::string counting(std::size_t size) {
  std::string result;
  for (std::size_t number = 0; result.size() < size; ++number)
    result += std::to_string(number) + " ";
  return result.substr(0, size);
}

TEST_F(LinkBetween, PassesEveryByteBothWaysAndInOrder) {
  const std::string there = counting(5'000'000), back = counting(3'000'000);
  auto sending = std::async(std::launch::async, [&] { return viewer.write(there); });
  auto answering = std::async(std::launch::async, [&] { return robot.write(back); });
  auto answer = std::async(std::launch::async, [&] { return viewer.read(back.size()); });
  EXPECT_TRUE(robot.read(there.size()) == there);
  EXPECT_TRUE(answer.get() == back);
  EXPECT_TRUE(sending.get() && answering.get());
}

TEST_F(LinkBetween, PassesTheEndOnAfterAllBytesAndForgetsTheConnection) {
  EXPECT_EQ(link.connections(), 1u);
  EXPECT_TRUE(viewer.write("the end"));
  viewer.finish();
  EXPECT_EQ(robot.read(100), "the end");
  EXPECT_EQ(robot.whyEnded(), 0);
  EXPECT_TRUE(robot.write("goodbye"));
  robot.finish();
  EXPECT_EQ(viewer.read(100), "goodbye");
  EXPECT_TRUE(waitUntil([&] { return link.connections() == 0; }));
  EXPECT_EQ(link.accepted(), 1u);
}

TEST_F(LinkBetween, HoldsBytesBackForTheDelayAndTheyComeWhenItIsLifted) {
  link.set(kHeldBack);
  EXPECT_TRUE(viewer.write("late"));
  EXPECT_FALSE(waitUntil([&] { return !robot.isEmpty(); }, 100ms));
  link.set({});
  EXPECT_EQ(robot.read(4), "late");
}

TEST_F(LinkBetween, DelaysOneWayAlone) {
  link.set(LinkWay::ToRobot, kHeldBack);
  EXPECT_TRUE(viewer.write("late"));
  EXPECT_TRUE(robot.write("at once"));
  EXPECT_EQ(viewer.read(7), "at once");
  EXPECT_TRUE(robot.isEmpty());
}

TEST_F(LinkBetween, IsLaterTheLongerItsDelay) {
  Link slower(server.port);
  const End other = End::connectTo(slower.port());
  const End otherRobot = server.accept();
  link.set({.delay = 20ms});
  slower.set({.delay = 400ms});
  EXPECT_TRUE(other.write("second"));
  EXPECT_TRUE(viewer.write("first"));
  EXPECT_EQ(robot.read(5), "first");
  EXPECT_TRUE(otherRobot.isEmpty());
  EXPECT_EQ(otherRobot.read(6), "second");
}

TEST_F(LinkBetween, KeepsTheOrderWhenTheDelayShrinks) {
  link.set({.delay = 100ms});
  EXPECT_TRUE(viewer.write("first "));
  EXPECT_TRUE(waitUntil([&] { return link.connections() == 1; }));
  link.set({.delay = 1ms});
  EXPECT_TRUE(viewer.write("second"));
  EXPECT_EQ(robot.read(12), "first second");
}

TEST_F(LinkBetween, HasASenderWaitThatIsFasterThanItsRate) {
  constexpr std::size_t kMost = 64u << 20;
  auto reading = std::async(std::launch::async, [&] { return robot.read(kMost).size(); });
  link.set({.bitsPerSecond = 8000});
  const std::size_t written = viewer.writeAllThatFits(kMost);
  EXPECT_LT(written, kMost);
  link.set({});
  EXPECT_TRUE(viewer.write(std::string(kMost - written, 'x')));
  EXPECT_EQ(reading.get(), kMost);
}

TEST_F(LinkBetween, HasASenderWaitWhoseReceiverDoesNotRead) {
  constexpr std::size_t kMost = 256u << 20;
  const std::size_t written = viewer.writeAllThatFits(kMost);
  EXPECT_LT(written, kMost);
  EXPECT_EQ(robot.read(written).size(), written);
}

TEST_F(LinkBetween, GivesNothingWhileItStallsAndEverythingAfterwards) {
  link.set({.stallEvery = 1h, .stallFor = 1h});
  EXPECT_TRUE(viewer.write("stalled"));
  EXPECT_FALSE(waitUntil([&] { return !robot.isEmpty(); }, 100ms));
  link.set({});
  EXPECT_EQ(robot.read(7), "stalled");
}

TEST_F(LinkBetween, GoesOnByItselfAfterEachStall) {
  link.set({.stallEvery = 20ms, .stallFor = 10ms});
  const std::string bytes = counting(2'000'000);
  auto sending = std::async(std::launch::async, [&] { return viewer.write(bytes); });
  EXPECT_TRUE(robot.read(bytes.size()) == bytes);
  EXPECT_TRUE(sending.get());
}

TEST_F(LinkBetween, SwallowsWhatIsSentMeanwhile) {
  link.set({.damage = LinkDamage::Swallow});
  EXPECT_TRUE(viewer.write("lost"));
  EXPECT_FALSE(waitUntil([&] { return !robot.isEmpty(); }, 100ms));
  link.set({});
  EXPECT_TRUE(viewer.write("kept"));
  EXPECT_EQ(robot.read(4), "kept");
}

TEST_F(LinkBetween, FlipsABitOfEverySoManyBytes) {
  const std::string bytes = counting(1000);
  link.set({.damage = LinkDamage::Garble, .damageEvery = 99});
  EXPECT_TRUE(viewer.write(bytes));
  const std::string garbled = robot.read(bytes.size());
  ASSERT_EQ(garbled.size(), bytes.size());
  for (std::size_t at = 0; at < bytes.size(); ++at)
    EXPECT_EQ(__builtin_popcount(static_cast<unsigned char>(bytes[at] ^ garbled[at])),
              at % 100 == 99 ? 1 : 0)
        << at;
}

TEST_F(LinkBetween, CutsStretchesOut) {
  link.set({.damage = LinkDamage::CutOut, .damageEvery = 4, .damageLength = 3});
  EXPECT_TRUE(viewer.write("0123456789abcdef"));
  viewer.finish();
  EXPECT_EQ(robot.read(100), "0123789aef");
}

TEST_F(LinkBetween, SendsStretchesTwice) {
  link.set({.damage = LinkDamage::Double, .damageEvery = 4, .damageLength = 3});
  EXPECT_TRUE(viewer.write("0123456789a"));
  viewer.finish();
  EXPECT_EQ(robot.read(100), "0123456456789a");
}

TEST_F(LinkBetween, CutsAConnectionInOrder) {
  link.cut();
  EXPECT_EQ(viewer.whyEnded(), 0);
  EXPECT_EQ(robot.whyEnded(), 0);
  viewer.close();
  robot.close();
  EXPECT_TRUE(waitUntil([&] { return link.connections() == 0; }));
}

TEST_F(LinkBetween, ClosesOneHalfAndTheOtherWorksOn) {
  link.halfClose(LinkWay::ToViewer);
  EXPECT_EQ(viewer.whyEnded(), 0);
  EXPECT_TRUE(viewer.write("still there"));
  EXPECT_EQ(robot.read(11), "still there");
}

TEST_F(LinkBetween, ResetsBothEnds) {
  link.reset();
  EXPECT_EQ(viewer.whyEnded(), ECONNRESET);
  EXPECT_EQ(robot.whyEnded(), ECONNRESET);
  EXPECT_EQ(link.connections(), 0u);
}

TEST_F(LinkBetween, PassesAResetOn) {
  EXPECT_TRUE(viewer.write("never read"));
  EXPECT_TRUE(waitUntil([&] { return !robot.isEmpty(); }));
  robot.close();  // with something unread: a reset
  EXPECT_EQ(viewer.whyEnded(), ECONNRESET);
}

TEST_F(LinkBetween, RefusesConnectionsWhileItIsClosedAndKeepsItsPort) {
  link.setDoor(LinkDoor::Closed);
  int error = 0;
  End::connectTo(link.port(), &error);
  EXPECT_EQ(error, ECONNREFUSED);
  EXPECT_TRUE(viewer.write("old")) << "what is there already stays";
  EXPECT_EQ(robot.read(3), "old");

  link.setDoor(LinkDoor::Open);
  const End again = End::connectTo(link.port(), &error);
  EXPECT_EQ(error, 0);
  const End robotAgain = server.accept();
  EXPECT_TRUE(again.write("new"));
  EXPECT_EQ(robotAgain.read(3), "new");
}

TEST_F(LinkBetween, SlamsTheDoor) {
  link.setDoor(LinkDoor::Slammed);
  EXPECT_EQ(End::connectTo(link.port()).whyEnded(), ECONNRESET);
  EXPECT_EQ(link.accepted(), 2u);
}

TEST_F(LinkBetween, ResetsAConnectionForWhichThereIsNoRobot) {
  server.listener = UniqueFd();
  EXPECT_EQ(End::connectTo(link.port()).whyEnded(), ECONNRESET);
}

TEST_F(LinkBetween, FollowsTheRobotToAnotherPort) {
  const Robot other;
  link.setRobotPort(other.port);
  const End again = End::connectTo(link.port());
  EXPECT_TRUE(other.accept().write("moved"));
  EXPECT_EQ(again.read(5), "moved");
}

}  // namespace
