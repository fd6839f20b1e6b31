// SPDX-License-Identifier: Apache-2.0
// For tests that run under own-network: periscope_test(... OWN_NETWORK).
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

// At the beginning of a test, or of a fixture's SetUp().
#define NEED_OWN_NETWORK()                                                   \
  do {                                                                       \
    if (const char* reason = std::getenv("PERISCOPE_NO_NETWORK"))            \
      GTEST_SKIP() << "this system gives no network of our own: " << reason; \
  } while (false)
