// SPDX-License-Identifier: Apache-2.0
// Modules that hang while their robot's heart beats.
#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "error_of_call.h"
#include "ky/broker.h"
#include "ky/module.h"
#include "support/link.h"
#include "support/wait.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

class Stuck : public KyModule {
 public:
  explicit Stuck(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "Stuck") {
    functionName("hang", getName(), "Returns when released.");
    bindMethod(&Stuck::hang);
    functionName("count", getName(), "Counts its calls.");
    bindMethod(&Stuck::count);
  }
  void hang() { fReleased.wait(); }
  int count() { return ++calls; }

  std::promise<void> release;
  std::atomic<int> calls = 0;

 private:
  std::shared_future<void> fReleased = release.get_future().share();
};

class MuteModule : public testing::Test {
 protected:
  MuteModule() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    module = KyModule::createModule<Stuck>(robot);
    KyBrokerOptions peer;
    peer.name = "desktop";
    peer.parent = robot->address();
    peer.patience.call = 200ms;
    desktop = KyBroker::create(peer);
  }
  ~MuteModule() override {
    desktop->shutdown();
    robot->shutdown();
  }
  std::string call(const char* method, std::chrono::milliseconds deadline = 200ms) {
    return errorOfCall([&] { desktop->call("Stuck", method, {}, deadline); });
  }

  boost::shared_ptr<KyBroker> robot, desktop;
  boost::shared_ptr<Stuck> module;
};

}  // namespace

TEST_F(MuteModule, CostsTheCallerOneWait) {
  EXPECT_NE(call("hang").find("no answer within 200 ms"), std::string::npos);
  for (int i = 0; i < 30; ++i)
    EXPECT_NE(call("count", 1s).find("has not answered for 0 s"), std::string::npos);
  module->release.set_value();
  ASSERT_TRUE(waitUntil([&] { return call("count") == "no error"; }));
  EXPECT_EQ(module->calls, 1) << "what failed at once never reached it";
}

TEST_F(MuteModule, DoesNotKeepOthersFromBeingCalled) {
  call("hang");
  EXPECT_TRUE(desktop->isModulePresent("Stuck"));
  EXPECT_EQ(desktop->moduleNames(), std::vector<std::string>{"Stuck"});
  module->release.set_value();
}

TEST_F(MuteModule, IsNotWhoOnlyMissedAShortDeadline) {
  EXPECT_NE(call("hang", 50ms).find("no answer within 50 ms"), std::string::npos);
  module->release.set_value();
  EXPECT_EQ(call("count", 60s), "no error");
}

TEST_F(MuteModule, IsAskedAgainWhenTheQuestionWasLost) {
  Link link(robot->address().port);
  KyBrokerOptions options;
  options.name = "far";
  options.parent = KyAddress{"127.0.0.1", link.port()};
  options.patience.call = 200ms;
  options.patience.silence = 10s;
  const auto far = KyBroker::create(options);
  const auto count = [&] { return errorOfCall([&] { far->call("Stuck", "count", {}, 200ms); }); };
  ASSERT_EQ(count(), "no error");
  link.set(LinkWay::ToRobot, {.damage = LinkDamage::Swallow});
  EXPECT_NE(count().find("no answer within 200 ms"), std::string::npos);
  const auto before = far->statistics().bytesOut;
  EXPECT_TRUE(waitUntil([&] { return far->statistics().bytesOut > before; }));
  link.set({});
  EXPECT_TRUE(waitUntil([&] { return count() == "no error"; }));
  far->shutdown();
}
