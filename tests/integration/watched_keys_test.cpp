// SPDX-License-Identifier: Apache-2.0
// The viewer's watched keys and the memory of the robot.
#include <gtest/gtest.h>

#include "ky/memory_proxy.h"
#include "robot/in_process_robot.h"
#include "robot/services/memory.h"
#include "support/log_capture.h"
#include "viewer/core/module.h"

namespace {

using Ky::KyValue;
using Lines = std::vector<std::string>;

class WatchedKeys : public testing::Test {
 protected:
  WatchedKeys() { fLog.clear(); }

  void write(const std::string& key, const KyValue& value) {
    Ky::KyMemoryProxy(fRobot.broker()).insertData(key, value);
  }
  void watch(const std::string& key) { fRobot.broker()->call("Periscope", "subscribeLog", {key}); }
  // What the poll makes of a key.
  Lines drawn(const std::string& key) {
    fModule->updateObjectsValue();
    const Ky::KyCriticalSection objects(fModule->model()->fObjectsMutex);
    Lines descriptions;
    for (const auto& [name, item] : fModule->model()->fObjects.at(key).fObjects)
      descriptions.push_back(item.description);
    return descriptions;
  }

  LogCapture fLog;
  InProcessRobot fRobot;
  boost::shared_ptr<robot::Memory> fMemory =
      Ky::KyModule::createModule<robot::Memory>(fRobot.broker());
  boost::shared_ptr<Ky::KyBroker> fDesktop = fRobot.connect();
  boost::shared_ptr<Module> fModule = Ky::KyModule::createModule<Module>(fDesktop);
};

KyValue figure(const std::string& text) {
  return KyValue::array({KyValue::array({0.5, 0.7, 20, 2, 0, 0, 0, 0, text})});
}

TEST_F(WatchedKeys, ThatAreMissingHarmNoOther) {
  write("a", figure("in a"));
  for (const char* key : {"a", "missing", "LandmarkDetected", "FaceDetected", "LogoDetected",
                          "PictureDetected", "BallDetected", "DuckDetected", "duck"})
    watch(key);
  EXPECT_EQ(drawn("a"), Lines{"in a"});
  write("a", figure("later in a"));
  EXPECT_EQ(drawn("a"), Lines{"later in a"});
  EXPECT_EQ(drawn("missing"), Lines{});
  EXPECT_EQ(fLog.lines(), Lines{});
}

TEST_F(WatchedKeys, AreDrawnForAsLongAsTheyAreThere) {
  watch("a");
  EXPECT_EQ(drawn("a"), Lines{});
  write("a", figure("in a"));
  EXPECT_EQ(drawn("a"), Lines{"in a"});
  Ky::KyMemoryProxy(fRobot.broker()).removeData("a");
  EXPECT_EQ(drawn("a"), Lines{});
  EXPECT_EQ(fLog.lines(), Lines{});
}

TEST_F(WatchedKeys, WhoseValuesAreTooLargeTogetherAreComplainedAboutWithTheLimit) {
  for (const char* key : {"a", "b", "c"}) {
    write(key, Ky::KyBinary(std::vector<std::uint8_t>(12u << 20)));
    watch(key);
  }
  EXPECT_EQ(drawn("a"), Lines{});
  const Lines lines = fLog.lines();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_NE(lines[0].find("with \"c\" they take 377"), std::string::npos) << lines[0];
  EXPECT_NE(lines[0].find("of 33554432 at most"), std::string::npos) << lines[0];
}

}  // namespace
