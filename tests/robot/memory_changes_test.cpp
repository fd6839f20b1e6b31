// SPDX-License-Identifier: Apache-2.0
// Changes of the robot's memory that are told without being asked for.
#include "robot/services/memory_changes.h"

#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/memory_proxy.h"
#include "robot/services/memory.h"
#include "support/wait.h"

namespace robot {
namespace {

using Ky::KyChanges;
using Ky::KyValue;
using namespace std::chrono_literals;

KyChanges::News news(const std::unique_ptr<KyChanges>& changes) {
  return changes->next(10s).value_or(KyChanges::News{{"nothing came", KyValue()}});
}

std::string keyOf(int number) {
  return "key " + std::to_string(number);
}

class MemoryChangesTest : public testing::Test {
 protected:
  MemoryChangesTest() {
    EXPECT_TRUE(waitUntil([&] { return fMemory.offersChanges(); }));
  }
  ~MemoryChangesTest() override { fModule.reset(); }

  // The stream itself, without what the proxy makes of it.
  std::unique_ptr<Ky::KyStreamReceiver> open(const std::vector<std::string>& keys) {
    auto stream = fDesktop->receiveStream(16);
    open(stream->id(), keys);
    return stream;
  }
  void open(std::int64_t id, const std::vector<std::string>& keys) {
    fDesktop->call("KyMemory", "openChanges", {id, KyValue::Array(keys.begin(), keys.end())});
  }

  // As one of the robot's own modules does.
  void write(const std::string& key, const KyValue& value) {
    fRobot.broker()->call("KyMemory", "insertData", {key, value});
  }

  InProcessRobot fRobot;
  boost::shared_ptr<Memory> fModule = Ky::KyModule::createModule<Memory>(fRobot.broker());
  boost::shared_ptr<Ky::KyBroker> fDesktop = fRobot.connect();
  Ky::KyMemoryProxy fMemory{fDesktop};
};

TEST_F(MemoryChangesTest, BeginWithTheValuesThatThereAre) {
  fMemory.insertData("a", 1);
  fMemory.insertData("b", KyValue::array({"two", 2.0}));
  fMemory.insertData("other", 3);
  const auto changes = fMemory.changes({"b", "missing", "a"});
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", 1}, {"b", KyValue::array({"two", 2.0})}}));
  EXPECT_FALSE(changes->next(0ms));
}

TEST_F(MemoryChangesTest, TellWhatIsWrittenWrittenAgainAndRemoved) {
  const auto changes = fMemory.changes({"a", "b"});
  EXPECT_EQ(news(changes), KyChanges::News{}) << "there is nothing yet";
  fMemory.insertData("a", 1);
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", 1}}));
  fMemory.insertData("b", "new");
  EXPECT_EQ(news(changes), (KyChanges::News{{"b", "new"}}));
  fMemory.removeData("a");
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", KyValue()}}));
  fMemory.insertData("a", 2);
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", 2}}));
}

TEST_F(MemoryChangesTest, DoNotTellOfOtherKeysNorOfTheSameValueAgain) {
  fMemory.insertData("a", 1);
  const auto changes = fMemory.changes({"a"});
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", 1}}));
  fMemory.insertData("a", 1);
  fMemory.insertData("b", 2);
  fMemory.insertData("a", 1.0);
  EXPECT_EQ(news(changes), (KyChanges::News{{"a", 1.0}}));
}

TEST_F(MemoryChangesTest, OfManyWritesTheLastStateOfEveryKeyArrives) {
  constexpr int kKeys = 64;
  constexpr int kWrites = 5000;
  std::vector<std::string> keys;
  for (int i = 0; i < kKeys; ++i) keys.push_back(keyOf(i));
  const auto changes = fMemory.changes(keys);
  for (int i = 0; i < kWrites; ++i) write(keyOf(i % kKeys), i);
  std::map<std::string, KyValue> state, last;
  for (int i = kWrites - kKeys; i < kWrites; ++i) last[keyOf(i % kKeys)] = i;
  ASSERT_TRUE(waitUntil([&] {
    for (const auto& [key, value] : changes->next(10ms).value_or(KyChanges::News{}))
      state[key] = value;
    return state == last;
  }));
}

TEST_F(MemoryChangesTest, AReaderWhoComesLateHearsOfEveryKeyAndOfThoseThatAreGone) {
  std::vector<std::string> keys = {"first", "gone"};
  for (int i = 0; i < 60; ++i) keys.push_back(keyOf(i));
  fMemory.insertData("gone", 0);
  const auto changes = fMemory.changes(keys);
  EXPECT_EQ(news(changes), (KyChanges::News{{"gone", 0}}));
  // More items than are kept for him: each waits until another reader has it.
  const auto watcher = fRobot.connect("watcher");
  Ky::KyMemoryProxy other(watcher);
  ASSERT_TRUE(waitUntil([&] { return other.offersChanges(); }));
  const auto prompt = other.changes(keys);
  EXPECT_EQ(news(prompt).size(), 1u);
  fMemory.insertData("first", 1);
  EXPECT_EQ(news(prompt).size(), 1u);
  fMemory.removeData("gone");
  EXPECT_EQ(news(prompt).size(), 1u);
  for (int i = 0; i < 60; ++i) {
    fMemory.insertData(keyOf(i), i);
    EXPECT_EQ(news(prompt).size(), 1u);
  }
  std::map<std::string, KyValue> state;
  ASSERT_TRUE(waitUntil([&] {
    for (const auto& [key, value] : changes->next(10ms).value_or(KyChanges::News{}))
      state[key] = value;
    return state.size() == 62;
  })) << state.size();
  EXPECT_EQ(state["first"], KyValue(1));
  EXPECT_EQ(state["gone"], KyValue());
}

TEST_F(MemoryChangesTest, EndWithTheReceiver) {
  fMemory.insertData("a", 1);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(news(fMemory.changes({"a"})).size(), 1u) << i;
}

TEST_F(MemoryChangesTest, OneThatIsOpenedAgainUnderItsIdTakesThePlaceOfTheFirst) {
  fMemory.insertData("a", 1);
  const auto stream = open({"b"});
  ASSERT_TRUE(stream->next(10s));
  open(stream->id(), {"a"});
  // Its first has a number that has come already.
  std::optional<Ky::KyStreamReceiver::Item> item;
  int value = 1;
  EXPECT_TRUE(waitUntil([&] {
    fMemory.insertData("b", ++value);
    fMemory.insertData("a", value);
    return (item = stream->next(100ms)).has_value();
  }));
  ASSERT_TRUE(item);
  EXPECT_EQ(item->value, KyValue::array({KyValue::array({"a", value})}));
}

TEST_F(MemoryChangesTest, EndWithTheRobot) {
  const auto changes = fMemory.changes({"a"});
  EXPECT_EQ(news(changes), KyChanges::News{});
  fModule.reset();
  fRobot.broker()->unregisterModule("KyMemory");
  EXPECT_EQ(errorText([&] { changes->next(10s); }), "no more changes come: it was ended");
}

TEST_F(MemoryChangesTest, AreNotOpenedWithoutKeysWithTooManyOrWithTooLongOnes) {
  EXPECT_EQ(errorText([&] { fMemory.changes({}); }), "whose changes? name at least one key");
  EXPECT_EQ(errorText([&] { fMemory.changes(std::vector<std::string>(65, "a")); }),
            "one stream has the changes of 64 keys at most, not of 65; open several");
  EXPECT_EQ(errorText([&] { fMemory.changes({std::string(1025, 'k')}); }),
            "a key may have 1024 bytes, this one has 1025");
  EXPECT_NO_THROW(fMemory.changes({std::string(1024, 'k')}));
}

TEST_F(MemoryChangesTest, AProgramHasSoManyStreamsAndNoMore) {
  std::vector<std::unique_ptr<KyChanges>> all;
  for (int i = 0; i < 32; ++i) all.push_back(fMemory.changes({"a"}));
  EXPECT_EQ(errorText([&] { fMemory.changes({"a"}); }),
            "there are 32 streams of changes already; close one first");
  Ky::KyMemoryProxy other(fRobot.connect("other"));
  ASSERT_TRUE(waitUntil([&] { return other.offersChanges(); }));
  EXPECT_NO_THROW(other.changes({"a"}));
  all.pop_back();
  EXPECT_NO_THROW(all.push_back(fMemory.changes({"a"})));
}

// An item has one array more around a value than what wrote it.
KyValue nested(int depth) {
  KyValue value = KyValue::array({"deep"});
  for (int i = 1; i < depth; ++i) value = KyValue::array({value});
  return value;
}

TEST_F(MemoryChangesTest, AValueThatFitsIntoNoItemKeepsNoOtherBack) {
  const auto changes = fMemory.changes({"a", "b", "c"});
  EXPECT_EQ(news(changes), KyChanges::News{});
  fMemory.insertData("b", nested(30));
  fMemory.insertData("a", 1);
  fMemory.insertData("c", 2);
  std::map<std::string, KyValue> state;
  ASSERT_TRUE(waitUntil([&] {
    for (const auto& [key, value] : changes->next(10ms).value_or(KyChanges::News{}))
      state[key] = value;
    return state.size() == 2;
  }));
  EXPECT_EQ(state, (std::map<std::string, KyValue>{{"a", 1}, {"c", 2}}));
  fMemory.insertData("b", nested(29));
  EXPECT_EQ(news(changes), (KyChanges::News{{"b", nested(29)}}));
}

TEST_F(MemoryChangesTest, ValuesThatFitOnlyOneByOneAllArrive) {
  const auto binary = [](std::uint8_t byte) {
    return Ky::KyBinary(std::vector<std::uint8_t>(15u << 20, byte));
  };
  for (int i = 0; i < 3; ++i) write(keyOf(i), binary(static_cast<std::uint8_t>(i)));
  const auto changes = fMemory.changes({keyOf(0), keyOf(1), keyOf(2)});
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(news(changes),
              (KyChanges::News{{keyOf(i), KyValue(binary(static_cast<std::uint8_t>(i)))}}));
  fMemory.insertData(keyOf(1), 1);
  EXPECT_EQ(news(changes), (KyChanges::News{{keyOf(1), 1}}));
}

}  // namespace
}  // namespace robot
