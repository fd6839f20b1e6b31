// SPDX-License-Identifier: Apache-2.0
// What becomes of a robot's news of its memory.
#include "ky/changes.h"

#include <gtest/gtest.h>

#include "error_of_call.h"
#include "ky/memory_proxy.h"
#include "ky/module.h"
#include "support/test_robot.h"
#include "support/wait.h"
#include "zu/mutex.h"

using namespace Ky;
using namespace std::chrono_literals;

namespace {

// Sends what the test tells it to.
class Memory : public KyModule {
 public:
  explicit Memory(boost::shared_ptr<KyBroker> broker) : KyModule(std::move(broker), "KyMemory") {
    functionName("openChanges", getName(), "");
    addParam("stream", "");
    addParam("keys", "");
    bindMethod(&Memory::openChanges);
    offer("openChanges");
  }
  void openChanges(const KyPeer& caller, std::int64_t stream, const KyValue& keys) {
    const zu::MutexLock guard(fMutex);
    fSender = getParentBroker()->sendStream(caller, stream);
    fOpened.push_back(keys.toString());
    if (!fFirst.isNothing()) fSender->send(fFirst);
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSender.reset();
  }
  // What each stream begins with.
  void setFirst(const KyValue& item) {
    const zu::MutexLock guard(fMutex);
    fFirst = item;
  }
  std::shared_ptr<KyStreamSender> sender() {
    const zu::MutexLock guard(fMutex);
    return fSender;
  }
  std::vector<std::string> opened() {
    const zu::MutexLock guard(fMutex);
    return fOpened;
  }

 private:
  zu::Mutex fMutex;
  KyValue fFirst ZU_GUARDED_BY(fMutex);
  std::shared_ptr<KyStreamSender> fSender ZU_GUARDED_BY(fMutex);
  std::vector<std::string> fOpened ZU_GUARDED_BY(fMutex);
};

KyValue one(const std::string& key, const KyValue& value) {
  return KyValue::array({KyValue::array({key, value})});
}

class Changes : public testing::Test {
 protected:
  Changes() {
    EXPECT_TRUE(waitUntil([&] { return proxy.offersChanges(); }));
  }
  ~Changes() override { memory.reset(); }

  TestRobot robot;
  boost::shared_ptr<Memory> memory = KyModule::createModule<Memory>(robot.broker());
  boost::shared_ptr<KyBroker> desktop = robot.connect();
  KyMemoryProxy proxy{desktop};
};

TEST(ChangesOfAnOlderRobot, AreNotOffered) {
  TestRobot robot;
  robot.add("KyMemory");
  KyMemoryProxy proxy(robot.connect());
  EXPECT_FALSE(proxy.offersChanges());
  EXPECT_EQ(errorOfCall([&] { proxy.changes({"a"}); }),
            "KyMemory.openChanges: this robot does not offer it; ask for the values instead");
  EXPECT_TRUE(robot.calls().empty());
}

TEST_F(Changes, AreThoseOfTheKeys) {
  memory->setFirst(one("a", 7));
  const auto changes = proxy.changes({"a", "b"});
  EXPECT_EQ(memory->opened(), std::vector<std::string>{R"(["a", "b"])"});
  EXPECT_EQ(changes->next(10s), (KyChanges::News{{"a", 7}}));
  EXPECT_FALSE(changes->next(0ms));
  memory->sender()->send(one("b", KyValue()));
  EXPECT_EQ(changes->next(10s), (KyChanges::News{{"b", KyValue()}}));
  EXPECT_EQ(memory->opened().size(), 1u);
}

TEST_F(Changes, AreAskedForAnewWhereOneIsMissing) {
  memory->setFirst(KyValue::array({KyValue::array({"a", 1}), KyValue::array({"b", 1})}));
  const auto changes = proxy.changes({"a", "b", "c"});
  ASSERT_EQ(changes->next(10s)->size(), 2u);
  memory->setFirst(one("c", 3));
  const auto sender = memory->sender();
  for (int i = 1; i <= 20; ++i) {
    sender->send(one("a", i));
    ASSERT_TRUE(waitUntil([&] { return sender->isIdle(); }));
  }
  desktop->isModulePresent("KyMemory");  // whose answer has passed them all
  const auto news = changes->next(10s);
  EXPECT_EQ(memory->opened().size(), 2u);
  EXPECT_EQ(news, (KyChanges::News{{"c", 3}, {"a", KyValue()}, {"b", KyValue()}}));
}

TEST_F(Changes, EndWithAReason) {
  const auto changes = proxy.changes({"a"});
  memory.reset();
  robot.broker()->unregisterModule("KyMemory");
  const char* ended = "KyMemory.openChanges: no more changes come: it was ended";
  EXPECT_EQ(errorOfCall([&] { changes->next(10s); }), ended);
  EXPECT_EQ(errorOfCall([&] { changes->next(10s); }), ended);
}

TEST_F(Changes, ThatAreNoneAreAnError) {
  const auto changes = proxy.changes({"a"});
  for (const KyValue& item :
       {KyValue(7), KyValue(), KyValue::array({7}), KyValue::array({KyValue::array({"a"})}),
        KyValue::array({KyValue::array({7, 7})}), one("a", 7)}) {
    ASSERT_TRUE(waitUntil([&] { return memory->sender()->isIdle(); }));
    memory->sender()->send(item);
    const bool isGood = item == one("a", 7);
    EXPECT_EQ(errorOfCall([&] { changes->next(10s); }) == "no error", isGood) << item.toString();
  }
  EXPECT_EQ(memory->opened().size(), 1u);
}

}  // namespace
