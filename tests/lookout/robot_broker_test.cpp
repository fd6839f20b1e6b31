// SPDX-License-Identifier: Apache-2.0
#include "lookout/robot_broker.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace {

struct Desktop {
  explicit Desktop(bool hasKeys) {
    qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
    if (hasKeys) Ky::KyKeyStore(Ky::KyKeyStore::defaultFolder()).create();
  }
  QTemporaryDir folder;
};

}  // namespace

TEST(RobotBroker, NeedsNoKeysForARobotOnLoopback) {
  const Desktop desktop(true);
  const auto options = Lookout::robotBrokerOptions("name", {"127.0.0.1", 9559});
  EXPECT_EQ(options.name, "name");
  EXPECT_EQ(options.parent, (Ky::KyAddress{"127.0.0.1", 9559}));
  EXPECT_FALSE(options.keys);
}

TEST(RobotBroker, UsesTheDesktopsKeysForOtherRobots) {
  const Desktop desktop(true);
  EXPECT_EQ(Lookout::robotBrokerOptions("name", {"10.0.0.1", 9559}).keys,
            Ky::KyKeyStore::defaultFolder());
}

TEST(RobotBroker, GoesWithoutKeysToTheOneAddressThatIsSaidToBeUnencrypted) {
  const Desktop desktop(true);
  Lookout::setUnencrypted({"10.0.0.1", 9559}, true);
  EXPECT_FALSE(Lookout::robotBrokerOptions("name", {"10.0.0.1", 9559}).keys);
  EXPECT_TRUE(Lookout::robotBrokerOptions("name", {"10.0.0.1", 9560}).keys);
  Lookout::setUnencrypted({"10.0.0.1", 9559}, false);
  EXPECT_TRUE(Lookout::robotBrokerOptions("name", {"10.0.0.1", 9559}).keys);
}

TEST(RobotBroker, GoesWithoutKeysWhenTheDesktopHasNone) {
  const Desktop desktop(false);
  EXPECT_FALSE(Lookout::robotBrokerOptions("name", {"10.0.0.1", 9559}).keys);
}
