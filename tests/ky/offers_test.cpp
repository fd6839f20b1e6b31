// SPDX-License-Identifier: Apache-2.0
// What modules say that they do beyond what every robot's do.
#include <gtest/gtest.h>

#include "ky/module.h"
#include "raw_peer.h"
#include "support/wait.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

class Painter : public KyModule {
 public:
  Painter(boost::shared_ptr<KyBroker> broker, const std::string& name, const std::string& what)
      : KyModule(std::move(broker), name) {
    offer(what);
  }
};

class OffersTest : public testing::Test {
 protected:
  OffersTest() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
  }
  ~OffersTest() override {
    for (const auto& peer : peers) peer->shutdown();
    robot->shutdown();
  }

  boost::shared_ptr<KyBroker> connect(const std::string& name, bool later = false) {
    KyBrokerOptions options;
    options.name = name;
    options.parent = robot->address();
    options.connectLater = later;
    peers.push_back(KyBroker::create(options));
    return peers.back();
  }

  boost::shared_ptr<KyBroker> robot;
  std::vector<boost::shared_ptr<KyBroker>> peers;
};

}  // namespace

TEST_F(OffersTest, APeerKnowsFromTheWelcomeWhatTheRobotsModulesOffer) {
  const auto painter = KyModule::createModule<Painter>(robot, "Painter", "gold");
  const auto desktop = connect("desktop");
  const auto before = desktop->statistics().bytesOut;
  EXPECT_TRUE(desktop->offers("Painter", "gold"));
  EXPECT_FALSE(desktop->offers("Painter", "silver"));
  EXPECT_FALSE(desktop->offers("Sculptor", "gold"));
  EXPECT_LT(desktop->statistics().bytesOut - before, 40U) << "somebody was asked";
}

TEST_F(OffersTest, TheRobotKnowsWhatItsOwnModulesOffer) {
  const auto painter = KyModule::createModule<Painter>(robot, "Painter", "gold");
  EXPECT_TRUE(robot->offers("Painter", "gold"));
}

TEST_F(OffersTest, PeersHearOfAModuleThatComesAndGoesLater) {
  const auto desktop = connect("desktop");
  EXPECT_FALSE(desktop->offers("Painter", "gold"));
  const auto painter = KyModule::createModule<Painter>(robot, "Painter", "gold");
  EXPECT_TRUE(waitUntil([&] { return desktop->offers("Painter", "gold"); }));
  robot->unregisterModule("Painter");
  EXPECT_TRUE(waitUntil([&] { return !desktop->offers("Painter", "gold"); }));
}

TEST_F(OffersTest, PeersHearWhatOtherPeersOfferAndNoMoreOnceThoseAreGone) {
  const auto desktop = connect("desktop");
  const auto program = connect("program");
  const auto painter = KyModule::createModule<Painter>(program, "Painter", "gold");
  EXPECT_TRUE(waitUntil([&] { return desktop->offers("Painter", "gold"); }));
  EXPECT_TRUE(waitUntil([&] { return robot->offers("Painter", "gold"); }));
  EXPECT_TRUE(connect("late")->offers("Painter", "gold"));
  program->shutdown();
  EXPECT_TRUE(waitUntil([&] { return !desktop->offers("Painter", "gold"); }));
}

TEST_F(OffersTest, AModuleThatWasThereBeforeTheConnectionIsOfferedWithTheHello) {
  const auto later = connect("later", true);
  const auto painter = KyModule::createModule<Painter>(later, "Painter", "gold");
  EXPECT_TRUE(waitUntil([&] { return robot->offers("Painter", "gold"); }));
}

TEST_F(OffersTest, NobodyOffersInTheNameOfOthersModules) {
  const auto painter = KyModule::createModule<Painter>(robot, "Painter", "gold");
  RawPeer raw(robot->address());
  raw.send(helloMessage("raw", "raw", {"Raw"},
                        KyValue::array({"Painter.silver", "Raw.bronze", "nonsense", 7})));
  EXPECT_TRUE(waitUntil([&] { return robot->offers("Raw", "bronze"); }));
  EXPECT_FALSE(robot->offers("Painter", "silver"));
  EXPECT_TRUE(robot->offers("Painter", "gold"));
}

TEST_F(OffersTest, NoPeerMakesOthersHoldMoreThanItsShareOfOffers) {
  RawPeer raw(robot->address());
  KyValue many = KyValue::array({"Raw." + std::string(200, 'x')});
  for (int i = 0; i < 1000; ++i) many.push("Raw." + std::to_string(1000 + i));
  raw.send(helloMessage("raw", "raw", {"Raw"}, many));
  EXPECT_TRUE(waitUntil([&] { return robot->offers("Raw", "1000"); }));
  EXPECT_TRUE(robot->offers("Raw", "1255"));
  EXPECT_FALSE(robot->offers("Raw", "1256"));
  EXPECT_FALSE(robot->offers("Raw", std::string(200, 'x')));
}

TEST_F(OffersTest, AHelloWithoutOffersIsWelcome) {
  RawPeer raw(robot->address());
  Message hello = helloMessage("raw", "raw", {});
  hello.fields.pop_back();
  raw.send(hello);
  const auto answer = raw.receive();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->kind, MessageKind::Welcome);
}
