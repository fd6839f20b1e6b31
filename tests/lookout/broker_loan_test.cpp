// SPDX-License-Identifier: Apache-2.0
#include "lookout/broker_loan.h"

#include <gtest/gtest.h>

#include <optional>

#include "lookout/robot_broker.h"
#include "tcp_robot.h"

using Lookout::BrokerLoan;

namespace {

boost::shared_ptr<Ky::KyBroker> connectTo(const TcpRobot& robot) {
  return Ky::KyBroker::create(Lookout::robotBrokerOptions("TestBroker", robot.address()));
}

}  // namespace

TEST(BrokerLoan, IsTakenOnceByWhoeverWouldMakeTheSameBroker) {
  const TcpRobot robot;
  const auto broker = connectTo(robot);
  const auto wanted = Lookout::robotBrokerOptions("TestBroker", robot.address());
  {
    const BrokerLoan loan(broker);
    EXPECT_FALSE(loan.isTaken());
    EXPECT_EQ(BrokerLoan::take(wanted), broker);
    EXPECT_TRUE(loan.isTaken());
    EXPECT_EQ(BrokerLoan::take(wanted), nullptr);
  }
  EXPECT_EQ(BrokerLoan::take(wanted), nullptr);
}

TEST(BrokerLoan, EndsWithTheLender) {
  const TcpRobot robot;
  const auto broker = connectTo(robot);
  std::optional<BrokerLoan> loan(broker);
  loan.reset();
  EXPECT_EQ(BrokerLoan::take(Lookout::robotBrokerOptions("TestBroker", robot.address())), nullptr);
}

TEST(BrokerLoan, MayBeOfNothing) {
  const BrokerLoan loan(nullptr);
  EXPECT_EQ(BrokerLoan::take(Lookout::robotBrokerOptions("TestBroker", {"127.0.0.1", 9559})),
            nullptr);
  EXPECT_FALSE(loan.isTaken());
}

TEST(BrokerLoan, IsLeftByWhoeverAsksForAnother) {
  const TcpRobot robot;
  const TcpRobot other;
  const BrokerLoan loan(connectTo(robot));
  EXPECT_EQ(BrokerLoan::take(Lookout::robotBrokerOptions("Other", robot.address())), nullptr);
  EXPECT_EQ(BrokerLoan::take(Lookout::robotBrokerOptions("TestBroker", other.address())), nullptr);
  EXPECT_FALSE(loan.isTaken());
}

TEST(BrokerLoan, IsLeftWhenItIsLessEncryptedThanWanted) {
  const TcpRobot robot;
  const BrokerLoan loan(connectTo(robot));
  auto wanted = Lookout::robotBrokerOptions("TestBroker", robot.address());
  wanted.keys = "/keys";
  EXPECT_EQ(BrokerLoan::take(wanted), nullptr);
}

TEST(BrokerLoan, IsLeftWhenItIsNotConnectedAnyMore) {
  const TcpRobot robot;
  const auto broker = connectTo(robot);
  const BrokerLoan loan(broker);
  broker->disconnect();
  EXPECT_EQ(BrokerLoan::take(Lookout::robotBrokerOptions("TestBroker", robot.address())), nullptr);
}
