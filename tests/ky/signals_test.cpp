// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "ky/broker.h"

// A program that handles signals may get one at any moment, on whatever thread accepts it.
TEST(Signals, AreNeverHandledByTheRuntimesThreads) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(::sigaction(SIGUSR1, &action, nullptr), 0);
  Ky::KyBrokerOptions options;
  options.name = "robot";
  options.listen = Ky::KyAddress{"127.0.0.1", 0};
  const auto robot = Ky::KyBroker::create(options);
  options = {};
  options.name = "desktop";
  options.parent = robot->address();
  const auto desktop = Ky::KyBroker::create(options);

  // Not on this thread: so it would be one of the runtime's.
  sigset_t usr1;
  sigemptyset(&usr1);
  sigaddset(&usr1, SIGUSR1);
  ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &usr1, nullptr), 0);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(::kill(::getpid(), SIGUSR1), 0);
    EXPECT_FALSE(desktop->isModulePresent("Nobody"));
  }
  sigset_t pending;
  ASSERT_EQ(::sigpending(&pending), 0);
  EXPECT_EQ(::sigismember(&pending, SIGUSR1), 1);
  EXPECT_EQ(desktop->connection(), Ky::KyConnection::Connected);
  desktop->shutdown();
  robot->shutdown();
}
