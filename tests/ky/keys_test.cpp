// SPDX-License-Identifier: Apache-2.0
// Keys: who is let in beyond loopback.
#include "ky/keys.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "ky/broker.h"
#include "support/log_capture.h"
#include "support/wait.h"
#include "transport/known_keys.h"

using namespace Ky;
namespace fs = std::filesystem;

namespace {

class Keys : public testing::Test {
 protected:
  Keys() {
    std::string name = (fs::temp_directory_path() / "ky-keys-XXXXXX").string();
    folder = ::mkdtemp(name.data());
  }
  ~Keys() override { fs::remove_all(folder); }

  // 0.0.0.0 is beyond loopback, yet reached over it.
  static KyBrokerOptions robotOptions() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"0.0.0.0", 0};
    return options;
  }
  static KyBrokerOptions desktopOptions(const KyBroker& robot) {
    KyBrokerOptions options;
    options.name = "desktop";
    options.parent = KyAddress{"127.0.0.1", robot.address().port};
    return options;
  }
  static std::string errorOf(const KyBrokerOptions& options) {
    try {
      KyBroker::create(options)->shutdown();
    } catch (const KyError& error) {
      return error.what();
    }
    return "no error";
  }

  fs::path folder;
};

TEST_F(Keys, ARobotBeyondLoopbackWantsKeysOrToBeToldThatItIsInsecure) {
  KyBrokerOptions options = robotOptions();
  EXPECT_NE(errorOf(options).find("give keys"), std::string::npos);
  options.insecure = true;
  EXPECT_EQ(errorOf(options), "no error");
}

TEST_F(Keys, APeerWithAKnownKeyIsLetIn) {
  KyKeyStore robotKeys(folder / "robot");
  KyKeyStore desktopKeys(folder / "desktop");
  robotKeys.create();
  robotKeys.add("desktop", desktopKeys.create().publicKey);
  KyBrokerOptions options = robotOptions();
  options.keys = robotKeys.folder();
  const auto robot = KyBroker::create(options);
  KyBrokerOptions peer = desktopOptions(*robot);
  peer.keys = desktopKeys.folder();
  desktopKeys.add(peer.parent->toString(), robotKeys.own().publicKey);
  EXPECT_EQ(errorOf(peer), "no error");
  robot->shutdown();
}

TEST_F(Keys, AStrangerGetsNothingButARefusal) {
  KyKeyStore robotKeys(folder / "robot");
  KyKeyStore desktopKeys(folder / "desktop");
  robotKeys.create();
  desktopKeys.create();
  KyBrokerOptions options = robotOptions();
  options.keys = robotKeys.folder();
  const auto robot = KyBroker::create(options);
  LogCapture log;
  KyBrokerOptions peer = desktopOptions(*robot);
  peer.keys = desktopKeys.folder();
  desktopKeys.add(peer.parent->toString(), robotKeys.own().publicKey);
  EXPECT_NE(errorOf(peer).find("it does not know this machine's key"), std::string::npos)
      << errorOf(peer);
  EXPECT_NE(errorOf(desktopOptions(*robot)).find("wants keys"), std::string::npos)
      << errorOf(desktopOptions(*robot));
  ASSERT_FALSE(log.lines("ky").empty());
  EXPECT_TRUE(log.lines("ky").front().starts_with("warning authenticate: refused a peer"));
  robot->shutdown();
}

// A robot with keys, and a desktop with keys of its own that knows the robot's.
class KeysOfARobotThatRuns : public Keys {
 protected:
  ~KeysOfARobotThatRuns() override {
    if (robot) robot->shutdown();
  }
  void start() {
    KyBrokerOptions options = robotOptions();
    options.keys = robotKeys.folder();
    robot = KyBroker::create(options);
    peer = desktopOptions(*robot);
    peer.keys = desktopKeys.folder();
    desktopKeys.add(peer.parent->toString(), robotKeys.own().publicKey);
  }
  bool isRefused() const {
    return errorOf(peer).find("know this machine's key") != std::string::npos;
  }
  fs::path known(const std::string& name) const { return robotKeys.knownFolder() / name; }

  KyKeyStore robotKeys{folder / "robot"};
  KyKeyStore desktopKeys{folder / "desktop"};
  const KyKeyPair robotsOwn = robotKeys.create();
  const KyKeyPair desktopsOwn = desktopKeys.create();
  boost::shared_ptr<KyBroker> robot;
  KyBrokerOptions peer;
};

TEST_F(KeysOfARobotThatRuns, CountAsSoonAsTheyAreAddedOrRemoved) {
  start();
  EXPECT_TRUE(isRefused());
  robotKeys.add("desktop", desktopsOwn.publicKey);
  EXPECT_EQ(errorOf(peer), "no error");
  robotKeys.add("desktop", KyKeyPair::generate().publicKey);
  EXPECT_TRUE(isRefused());
  robotKeys.add("desktop", desktopsOwn.publicKey);
  EXPECT_EQ(errorOf(peer), "no error");
  fs::remove(known("desktop.public"));
  EXPECT_TRUE(isRefused());
}

// The everyday case: a desktop that waits, refused, while the robot's owner adds its key.
TEST_F(KeysOfARobotThatRuns, LetInWhoWasRefusedAndStillWaits) {
  start();
  peer.connectLater = true;
  const auto desktop = KyBroker::create(peer);
  const auto problem = [&] {
    try {
      desktop->moduleNames();
    } catch (const KyError& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  ASSERT_TRUE(
      waitUntil([&] { return problem().find("know this machine's key") != std::string::npos; }));
  robotKeys.add("desktop", desktopsOwn.publicKey);
  EXPECT_TRUE(waitUntil([&] { return desktop->connection() == KyConnection::Connected; }));
  desktop->shutdown();
}

// Faster than the file system's clock ticks.
TEST_F(Keys, AreAllKnownAtOnceWhenTheyAreAddedInARow) {
  KyKeyStore store(folder / "robot");
  store.create();
  KnownKeys known(store);
  for (int i = 0; i < 40; ++i) {
    const std::string key = KyKeyPair::generate().publicKey;
    EXPECT_FALSE(known.contains(key));
    store.add("desktop" + std::to_string(i), key);
    EXPECT_TRUE(known.contains(key)) << i;
  }
}

TEST_F(KeysOfARobotThatRuns, CountSoonWhenTheirFilesAreEdited) {
  robotKeys.add("desktop", robotsOwn.publicKey);
  start();
  EXPECT_TRUE(isRefused());
  std::ofstream(known("desktop.public")) << desktopsOwn.publicKey;
  EXPECT_TRUE(waitUntil([&] { return !isRefused(); }));
}

TEST_F(KeysOfARobotThatRuns, LockNobodyOutWhenOneOfThemIsBroken) {
  std::ofstream(known("nonsense.public")) << "nonsense";
  std::ofstream(known("long.public")) << std::string(1 << 20, 'x');
  robotKeys.add("desktop", desktopsOwn.publicKey);
  const LogCapture log;
  start();
  EXPECT_EQ(errorOf(peer), "no error");
  fs::create_directory(known("folder.public"));
  ASSERT_EQ(::mkfifo(known("pipe.public").c_str(), 0600), 0);
  EXPECT_EQ(errorOf(peer), "no error");
  EXPECT_EQ(errorOf(peer), "no error");
  for (const char* name : {"nonsense", "long", "folder", "pipe"}) {
    const auto lines = log.lines("ky");
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [&](const std::string& line) {
                              return line.find(std::string(name) + ".public: ") != line.npos;
                            }),
              1)
        << name;
  }
}

TEST_F(KeysOfARobotThatRuns, AreGoneWithTheirFolder) {
  robotKeys.add("desktop", desktopsOwn.publicKey);
  start();
  EXPECT_EQ(errorOf(peer), "no error");
  fs::remove_all(robotKeys.knownFolder());
  EXPECT_TRUE(isRefused());
}

TEST_F(Keys, ADesktopWithKeysSaysHowToReachARobotThatHasNone) {
  KyKeyStore desktopKeys(folder / "desktop");
  desktopKeys.create();
  KyBrokerOptions options = robotOptions();
  options.insecure = true;
  const auto robot = KyBroker::create(options);
  KyBrokerOptions peer = desktopOptions(*robot);
  EXPECT_EQ(errorOf(peer), "no error");
  peer.keys = desktopKeys.folder();
  desktopKeys.add(peer.parent->toString(), KyKeyPair::generate().publicKey);
  EXPECT_NE(errorOf(peer).find("connect without encryption"), std::string::npos) << errorOf(peer);
  robot->shutdown();
}

TEST_F(Keys, ADesktopThatDoesNotKnowTheRobotSaysHowToLearnItsKey) {
  KyKeyStore desktopKeys(folder / "desktop");
  desktopKeys.create();
  KyBrokerOptions options;
  options.name = "desktop";
  options.parent = KyAddress{"127.0.0.1", 9};
  options.keys = desktopKeys.folder();
  EXPECT_NE(errorOf(options).find("ky keys trust"), std::string::npos);
}

TEST_F(Keys, AStoreNeverOverwritesItsPair) {
  KyKeyStore store(folder / "keys");
  EXPECT_FALSE(store.exists());
  const KyKeyPair pair = store.create();
  EXPECT_TRUE(store.exists());
  EXPECT_THROW(store.create(), KyError);
  EXPECT_EQ(store.own().secretKey, pair.secretKey);
  EXPECT_EQ(fs::status(folder / "keys" / "own.secret").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Keys, NeverLookLikeAnOptionOfACommand) {
  for (int i = 0; i < 1000; ++i) ASSERT_NE(KyKeyPair::generate().publicKey[0], '-') << i;
}

TEST_F(Keys, AStoreRefusesWhatIsNoKeyAndNoName) {
  KyKeyStore store(folder / "keys");
  const std::string key = KyKeyPair::generate().publicKey;
  EXPECT_THROW(store.add("robot", "short"), KyError);
  EXPECT_THROW(store.add("../robot", key), KyError);
  EXPECT_THROW(store.add("", key), KyError);
  EXPECT_THROW(store.own(), KyError);
  store.add("10.0.0.7:9559", key);
  EXPECT_EQ(store.known("10.0.0.7:9559"), key);
  EXPECT_EQ(store.known("other"), "");
  EXPECT_EQ(store.knownKeys(), std::vector<std::string>{key});
  std::ofstream(folder / "keys" / "known" / "broken.public") << "nonsense";
  EXPECT_THROW(store.knownKeys(), KyError);
}

struct AddressCase {
  const char* text;
  const char* host;
  int port;
};

TEST(Address, IsReadFromText) {
  const AddressCase cases[] = {{"robot", "robot", 9559},     {"10.0.0.7:12", "10.0.0.7", 12},
                               {"[::1]:80", "::1", 80},      {"[::1]", "::1", 9559},
                               {"fe80::1", "fe80::1", 9559}, {"a:0", "a", 0},
                               {"a:65535", "a", 65535}};
  for (const auto& [text, host, port] : cases)
    EXPECT_EQ(KyAddress::parse(text), (KyAddress{host, port})) << text;
}

TEST(Address, SaysWhatIsWrong) {
  for (const char* text : {"", ":80", "robot:", "robot:x", "robot:-1", "robot:65536", "robot:8 0",
                           "a b", "[::1", "[::1]80", "a/b"})
    EXPECT_THROW(KyAddress::parse(text), KyError) << text;
}

TEST(Address, KnowsLoopback) {
  for (const char* host : {"127.0.0.1", "127.3.2.1", "localhost", "::1"})
    EXPECT_TRUE((KyAddress{host, 1}.isLoopback())) << host;
  for (const char* host : {"0.0.0.0", "10.0.0.1", "robot", "::"})
    EXPECT_FALSE((KyAddress{host, 1}.isLoopback())) << host;
}

}  // namespace
