// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/extractor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>

#include "ky/memory_proxy.h"
#include "robot/in_process_robot.h"
#include "robot/services/memory.h"
#include "support/log_capture.h"
#include "support/wait.h"

namespace robot {
namespace {

using Ky::KyValue;
using namespace std::chrono_literals;

const KyValue kNothing = KyValue::array();

// Finds one thing in every picture, or fails when it is told to. The test holds it by reference.
class Finder : public Detector {
 public:
  struct State {
    std::atomic<int> looks = 0;
    std::atomic<bool> fails = false;
  };
  explicit Finder(State& state) : fState(state) {}

  std::vector<std::string> keys() const override { return {"Found", "Missed"}; }
  std::vector<Finding> detect(const Frame& frame) override {
    ++fState.looks;
    if (fState.fails) throw std::runtime_error("the glass is dirty");
    return {{"Found", findings(frame, {KyValue("thing")})}};
  }

 private:
  State& fState;
};

class TestExtractor : public Extractor {
 public:
  TestExtractor(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                Finder::State& state)
      : Extractor(std::move(broker), std::move(cameras), "KyFinder", "things",
                  std::make_unique<Finder>(state)) {}
  std::atomic<int> gone = 0;

 protected:
  void subscriberGone(const Ky::KyPeer&) override { ++gone; }
};

class ExtractorTest : public testing::Test {
 protected:
  void createMemory() { fMemoryModule = Ky::KyModule::createModule<Memory>(fRobot.broker()); }
  void createExtractor() {
    fExtractor = Ky::KyModule::createModule<TestExtractor>(fRobot.broker(), fCameras, fState);
  }
  void createBoth() {
    createMemory();
    createExtractor();
  }

  static void subscribe(const boost::shared_ptr<Ky::KyBroker>& desktop, int period = 0,
                        const std::string& name = "Periscope") {
    desktop->call("KyFinder", "subscribe", {name, period, 1.0f});
  }
  static void unsubscribe(const boost::shared_ptr<Ky::KyBroker>& desktop,
                          const std::string& name = "Periscope") {
    desktop->call("KyFinder", "unsubscribe", {name});
  }

  KyValue memory(const std::string& key) { return Ky::KyMemoryProxy(fRobot.broker()).getData(key); }
  bool waitForFinding() {
    return waitUntil([&] { return memory("Found") != kNothing; });
  }
  bool waitForLooks(int more) {
    const int before = fState.looks;
    return waitUntil([&] { return fState.looks >= before + more; });
  }
  // Whether nobody reads the camera's pictures.
  bool cameraRests() {
    return errorText([&] { fCameras->camera(0).newest(0ms); }) != "no error";
  }
  bool waitForRest() {
    return waitUntil([&] { return cameraRests() && memory("Found") == kNothing; });
  }
  // While a subscriber is known to be there.
  bool staysAwake() { return waitForLooks(3) && memory("Found") != kNothing; }

  Finder::State fState;
  LogCapture fLog;
  std::shared_ptr<Cameras> fCameras = InProcessRobot::cameras();
  InProcessRobot fRobot;
  boost::shared_ptr<Memory> fMemoryModule;
  boost::shared_ptr<TestExtractor> fExtractor;
};

TEST_F(ExtractorTest, LooksAtNothingUntilSomebodySubscribes) {
  createBoth();
  EXPECT_TRUE(cameraRests());
  EXPECT_EQ(fState.looks, 0);
  subscribe(fRobot.connect());
  EXPECT_TRUE(waitForFinding());
}

TEST_F(ExtractorTest, HasItsKeysEmptyBeforeAndAfter) {
  createBoth();
  EXPECT_EQ(memory("Found"), kNothing);
  EXPECT_EQ(memory("Missed"), kNothing);
  const auto desktop = fRobot.connect();
  subscribe(desktop);
  ASSERT_TRUE(waitForFinding());
  EXPECT_EQ(memory("Missed"), kNothing) << "a key that a look does not write keeps what it had";
  unsubscribe(desktop);
  EXPECT_TRUE(waitForRest());
}

TEST_F(ExtractorTest, EmptiesItsKeysWhenItIsTakenAway) {
  createBoth();
  subscribe(fRobot.connect());
  ASSERT_TRUE(waitForFinding());
  fRobot.broker()->unregisterModule("KyFinder");
  EXPECT_EQ(memory("Found"), kNothing);
  EXPECT_TRUE(cameraRests());
}

TEST_F(ExtractorTest, TellsWhenThePictureWasTaken) {
  createBoth();
  subscribe(fRobot.connect());
  ASSERT_TRUE(waitForFinding());
  const KyValue found = memory("Found");
  ASSERT_EQ(found.size(), 2u);
  EXPECT_GT(found[0][0].asInt64(), 1600000000);
  EXPECT_LT(found[0][1].asInt(), 1000000);
  EXPECT_EQ(found[1], KyValue::array({"thing"}));
}

TEST_F(ExtractorTest, LooksAgainAndAgain) {
  createBoth();
  subscribe(fRobot.connect());
  EXPECT_TRUE(waitForLooks(5));
}

TEST_F(ExtractorTest, LooksAtOnceHoweverLongThePeriod) {
  createBoth();
  subscribe(fRobot.connect(), std::numeric_limits<int>::max());
  EXPECT_TRUE(waitForFinding());
}

TEST_F(ExtractorTest, LooksAsOftenAsTheMostEagerWhoCameLater) {
  createBoth();
  const auto desktop = fRobot.connect();
  subscribe(desktop, std::numeric_limits<int>::max(), "slow");
  ASSERT_TRUE(waitForFinding());
  subscribe(desktop, 0, "eager");
  EXPECT_TRUE(waitForLooks(5));
}

TEST_F(ExtractorTest, GoesOnUntilTheLastSubscriberLeaves) {
  createBoth();
  const auto one = fRobot.connect(), two = fRobot.connect();
  subscribe(one);
  subscribe(two);
  subscribe(two, 0, "another name");
  unsubscribe(two);
  EXPECT_EQ(fExtractor->gone, 0) << "the peer has another subscription";
  unsubscribe(one);
  EXPECT_EQ(fExtractor->gone, 1);
  EXPECT_TRUE(staysAwake());
  unsubscribe(two, "another name");
  EXPECT_TRUE(waitForRest());
  EXPECT_EQ(fExtractor->gone, 2);
}

TEST_F(ExtractorTest, ForgetsAPeerThatIsGone) {
  createBoth();
  const auto leaver = fRobot.connect(), stayer = fRobot.connect();
  subscribe(leaver);
  subscribe(leaver, 0, "another name");
  subscribe(stayer);
  leaver->shutdown();
  EXPECT_TRUE(waitUntil([&] { return fExtractor->gone == 1; }));
  EXPECT_TRUE(staysAwake());
  stayer->shutdown();
  EXPECT_TRUE(waitForRest());
}

TEST_F(ExtractorTest, CanBeSubscribedAgain) {
  createBoth();
  const auto desktop = fRobot.connect();
  for (int i = 0; i < 3; ++i) {
    subscribe(desktop);
    ASSERT_TRUE(waitForFinding());
    unsubscribe(desktop);
    ASSERT_TRUE(waitForRest());
  }
}

TEST_F(ExtractorTest, SaysOnceThatTheMemoryIsMissingAndGoesOn) {
  createExtractor();
  const auto desktop = fRobot.connect();
  subscribe(desktop);
  ASSERT_TRUE(waitForLooks(4));
  EXPECT_EQ(fLog.lines("kyrobot"),
            std::vector<std::string>{"warning KyFinder: KyMemory doesn't take what was found: the "
                                     "robot has no module of this name"});
  createMemory();
  EXPECT_TRUE(waitUntil([&] { return errorText([&] { memory("Found"); }) == "no error"; }));
  EXPECT_TRUE(waitForFinding());
}

TEST_F(ExtractorTest, SaysOnceThatLookingFailedAndGoesOn) {
  createBoth();
  const auto desktop = fRobot.connect();
  const std::vector<std::string> once{"warning KyFinder: the glass is dirty"};
  fState.fails = true;
  subscribe(desktop);
  ASSERT_TRUE(waitForLooks(4));
  EXPECT_EQ(fLog.lines("kyrobot"), once);
  fState.fails = false;
  ASSERT_TRUE(waitForFinding());
  fLog.clear();
  fState.fails = true;
  ASSERT_TRUE(waitForLooks(4));
  EXPECT_EQ(fLog.lines("kyrobot"), once) << "it is news again";
}

TEST_F(ExtractorTest, DoesNotComplainWhenTheMemoryGoesFirstAtTheEnd) {
  createBoth();
  subscribe(fRobot.connect(), std::numeric_limits<int>::max());
  ASSERT_TRUE(waitForFinding());
  fRobot.broker()->unregisterModule("KyMemory");
  fRobot.broker()->unregisterModule("KyFinder");
  EXPECT_EQ(fLog.lines("kyrobot"), std::vector<std::string>{});
}

TEST_F(ExtractorTest, RefusesASubscriptionThatCannotBeKept) {
  createBoth();
  const auto desktop = fRobot.connect();
  EXPECT_NE(errorText([&] { subscribe(desktop, -5); }), "no error");
  EXPECT_NE(errorText([&] {
              desktop->call("KyFinder", "subscribe", {"me", 1.5, 1.0});
            }),
            "no error");
  EXPECT_NO_THROW(unsubscribe(desktop, "nobody"));
  EXPECT_TRUE(cameraRests());
}

TEST_F(ExtractorTest, SaysWhatItLooksForAndWhereItWritesIt) {
  createBoth();
  const KyValue help = fRobot.connect()->call("KyFinder", "getModuleHelp", {});
  EXPECT_EQ(help[0].asString(),
            "Looks for things in the camera's pictures and writes them under \"Found\", \"Missed\" "
            "in KyMemory, while somebody is subscribed.");
}

TEST(Findings, OfNothingAreTheEmptyArray) {
  EXPECT_EQ(findings(Frame(cv::Mat(), 1234567, 0), {}), kNothing);
}

TEST(Findings, BeginWithThePicturesTime) {
  EXPECT_EQ(findings(Frame(cv::Mat(), 7000042, 0), {KyValue(1), KyValue("two")}),
            KyValue::array({KyValue::array({7, 42}), KyValue::array({1, "two"})}));
}

}  // namespace
}  // namespace robot
