// SPDX-License-Identifier: Apache-2.0
#include "robots/broker_closer.h"

#include <gtest/gtest.h>

#include "support/wait.h"
#include "tcp_robot.h"

using Lookout::BrokerCloser;

namespace {

boost::shared_ptr<Ky::KyBroker> connectTo(const TcpRobot& robot) {
  Ky::KyBrokerOptions options;
  options.name = "caller";
  options.parent = robot.address();
  return Ky::KyBroker::create(std::move(options));
}

}  // namespace

TEST(BrokerCloser, ClosesBrokersElsewhere) {
  const TcpRobot robot;
  const auto broker = connectTo(robot);
  BrokerCloser closer;
  closer.close(broker);
  EXPECT_TRUE(waitUntil([&] { return broker->connection() == Ky::KyConnection::Closed; }));
}

TEST(BrokerCloser, HasClosedThemAllWhenItGoes) {
  const TcpRobot robot;
  const std::vector brokers = {connectTo(robot), connectTo(robot), connectTo(robot)};
  {
    BrokerCloser closer;
    for (const auto& broker : brokers) closer.close(broker);
  }
  for (const auto& broker : brokers) {
    EXPECT_EQ(broker->connection(), Ky::KyConnection::Closed);
    EXPECT_EQ(broker.use_count(), 1);
  }
}
