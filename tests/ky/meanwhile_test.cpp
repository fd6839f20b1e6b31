// SPDX-License-Identifier: Apache-2.0
// What a thread does while it waits for a robot.
#include "ky/meanwhile.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <thread>
#include <zmq.hpp>

#include "ky/module.h"
#include "ky/proxy.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

// Answers once it is let go.
class Slow : public KyModule {
 public:
  explicit Slow(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "Slow") {
    functionName("wait", getName(), "Answers when it may.");
    bindMethod(&Slow::wait);
  }
  bool wait() { return mayAnswer.try_acquire_for(10s); }

  std::counting_semaphore<> mayAnswer{0};
};

class Meanwhile : public testing::Test {
 protected:
  Meanwhile() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
    slow = KyModule::createModule<Slow>(robot);
    desktop = connect(robot->address());
  }
  ~Meanwhile() override {
    slow->mayAnswer.release(100);
    slow.reset();
    desktop->shutdown();
    robot->shutdown();
  }

  static boost::shared_ptr<KyBroker> connect(const KyAddress& address) {
    KyBrokerOptions options;
    options.name = "desktop";
    options.parent = address;
    return KyBroker::create(options);
  }
  bool callSlow() { return desktop->getProxy("Slow", 0)->call<bool>("wait"); }

  boost::shared_ptr<KyBroker> robot;
  boost::shared_ptr<Slow> slow;
  boost::shared_ptr<KyBroker> desktop;
};

}  // namespace

TEST_F(Meanwhile, AThreadThatWaitsForAnAnswerWorksMeanwhile) {
  const auto caller = std::this_thread::get_id();
  int worked = 0;
  std::string what;
  const KyMeanwhile meanwhile([&](const std::string& waitedFor) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    EXPECT_TRUE(KyMeanwhile::isAtWork());
    what = waitedFor;
    if (++worked == 3) slow->mayAnswer.release();  // else it would never be answered
  });
  EXPECT_TRUE(callSlow());
  EXPECT_EQ(worked, 3);
  EXPECT_EQ(what, "Slow at " + robot->address().toString());
  EXPECT_FALSE(KyMeanwhile::isAtWork());
}

TEST_F(Meanwhile, WhatTheWorkCallsItselfJustWaits) {
  int worked = 0;
  const KyMeanwhile meanwhile([&](const std::string&) {
    if (++worked > 1) return;
    slow->mayAnswer.release(2);
    EXPECT_EQ(desktop->getProxy("Slow")->call<bool>("ping"), true);
  });
  EXPECT_TRUE(callSlow());
  EXPECT_EQ(worked, 1);
}

TEST_F(Meanwhile, OtherThreadsAreLeftAlone) {
  const KyMeanwhile meanwhile([](const std::string&) { ADD_FAILURE(); });
  std::thread other([this] {
    std::thread later([this] { slow->mayAnswer.release(); });
    EXPECT_TRUE(callSlow());
    later.join();
  });
  other.join();
}

TEST_F(Meanwhile, TheInnermostCountsAndTheOuterComesBack) {
  int outer = 0;
  int inner = 0;
  const auto letGo = [this](int& count) {
    return [this, &count](const std::string&) {
      if (++count == 1) slow->mayAnswer.release();
    };
  };
  const KyMeanwhile first(letGo(outer));
  {
    const KyMeanwhile second(letGo(inner));
    EXPECT_TRUE(callSlow());
  }
  EXPECT_EQ(outer, 0);
  EXPECT_TRUE(callSlow());
  EXPECT_GE(inner, 1);
  EXPECT_GE(outer, 1);
}

TEST_F(Meanwhile, ADeadlineStillEndsTheWait) {
  int worked = 0;
  const KyMeanwhile meanwhile([&](const std::string&) { ++worked; });
  EXPECT_THROW(desktop->call("Slow", "wait", {}, 300ms), KyError);
  EXPECT_GE(worked, 1);
}

TEST(MeanwhileConnecting, AThreadThatWaitsForAConnectionWorksMeanwhile) {
  // Listens, but never says a word.
  zmq::context_t context;
  zmq::socket_t silent(context, zmq::socket_type::stream);
  silent.bind("tcp://127.0.0.1:*");
  const std::string endpoint = silent.get(zmq::sockopt::last_endpoint);
  const KyAddress address{"127.0.0.1", std::stoi(endpoint.substr(endpoint.rfind(':') + 1))};
  std::string what;
  const KyMeanwhile meanwhile([&](const std::string& waitedFor) { what = waitedFor; });
  KyBrokerOptions options;
  options.name = "desktop";
  options.parent = address;
  EXPECT_THROW(KyBroker::create(options), KyError);
  EXPECT_EQ(what, "the robot at " + address.toString());
}
