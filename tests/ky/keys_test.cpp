// SPDX-License-Identifier: Apache-2.0
// Keys: who is let in beyond loopback.
#include "ky/keys.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ky/broker.h"
#include "support/log_capture.h"

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
