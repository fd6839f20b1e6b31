// SPDX-License-Identifier: Apache-2.0
// Several peers under one name.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <set>

#include "ky/module.h"
#include "ky/proxy.h"

using namespace Ky;

namespace {

class Named : public KyModule {
 public:
  Named(boost::shared_ptr<KyBroker> broker, int number)
      : KyModule(std::move(broker), "Named"), fNumber(number) {
    functionName("number", getName(), "Which one this is.");
    bindMethod(&Named::number);
  }
  int number() { return fNumber; }

 private:
  int fNumber;
};

class Registrar : public KyModule {
 public:
  explicit Registrar(boost::shared_ptr<KyBroker> broker)
      : KyModule(std::move(broker), "Registrar") {
    functionName("enter", getName(), "Counts the peers that came.");
    bindMethod(&Registrar::enter);
  }
  int enter(const KyPeer& peer) {
    peers.insert(peer);
    return static_cast<int>(peers.size());
  }
  std::set<KyPeer> peers;
};

class Peers : public testing::Test {
 protected:
  Peers() {
    KyBrokerOptions options;
    options.name = "robot";
    options.inProcess = place;
    options.listenInProcess = "robot";
    robot = KyBroker::create(options);
  }
  ~Peers() override {
    for (const auto& desktop : desktops) desktop->shutdown();
    robot->shutdown();
  }
  boost::shared_ptr<KyBroker> connect() {
    KyBrokerOptions options;
    options.name = "PeriscopeBroker";
    options.inProcess = place;
    options.parentInProcess = "robot";
    desktops.push_back(KyBroker::create(options));
    return desktops.back();
  }

  boost::shared_ptr<KyInProcess> place = boost::make_shared<KyInProcess>();
  boost::shared_ptr<KyBroker> robot;
  std::vector<boost::shared_ptr<KyBroker>> desktops;
};

TEST_F(Peers, ACallGoesToTheNewestHolderAndToTheOneBeforeWhenThatLeaves) {
  const auto first = connect();
  const auto second = connect();
  KyModule::createModule<Named>(first, 1);
  KyModule::createModule<Named>(second, 2);
  const auto proxy = robot->getProxy("Named");
  EXPECT_EQ(proxy->call<int>("number"), 2);
  second->unregisterModule("Named");
  EXPECT_EQ(proxy->call<int>("number"), 1);
  KyModule::createModule<Named>(second, 3);
  EXPECT_EQ(proxy->call<int>("number"), 3);
  first->unregisterModule("Named");
  EXPECT_EQ(proxy->call<int>("number"), 3);
}

TEST_F(Peers, EachHasItsOwnModulesFirst) {
  const auto first = connect();
  const auto second = connect();
  KyModule::createModule<Named>(first, 1);
  KyModule::createModule<Named>(second, 2);
  EXPECT_EQ(first->getProxy("Named")->call<int>("number"), 1);
  EXPECT_EQ(second->getProxy("Named")->call<int>("number"), 2);
}

TEST_F(Peers, AModuleTellsTwoPeersOfOneNameApart) {
  KyModule::createModule<Registrar>(robot);
  const auto first = connect();
  const auto second = connect();
  EXPECT_EQ(first->getProxy("Registrar")->call<int>("enter"), 1);
  EXPECT_EQ(first->getProxy("Registrar")->call<int>("enter"), 1);
  EXPECT_EQ(second->getProxy("Registrar")->call<int>("enter"), 2);
  EXPECT_EQ(robot->getProxy("Registrar")->call<int>("enter"), 3);
}

}  // namespace
