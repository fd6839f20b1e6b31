// SPDX-License-Identifier: Apache-2.0
#include "robot/services/memory.h"

#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/memory_proxy.h"

namespace robot {
namespace {

using Ky::KyValue;

class MemoryTest : public testing::Test {
 protected:
  InProcessRobot fRobot;
  MemoryLimits fLimits{4, 16, 2000, 3000};
  boost::shared_ptr<Memory> fModule = Ky::KyModule::createModule<Memory>(fRobot.broker(), fLimits);
  Ky::KyMemoryProxy fMemory{fRobot.connect()};
};

TEST_F(MemoryTest, GivesBackWhatWasStored) {
  const KyValue figures =
      KyValue::array({KyValue::array({0.5, 0.7, 20, 2, 0, 0, 0, 0, "this is a test"})});
  fMemory.insertData("figures", figures);
  EXPECT_EQ(fMemory.getData("figures"), figures);
  EXPECT_EQ(Ky::KyMemoryProxy(fRobot.connect()).getData("figures"), figures) << "to everybody";
}

TEST_F(MemoryTest, ReplacesAValue) {
  fMemory.insertData("key", 1);
  fMemory.insertData("key", "two");
  EXPECT_EQ(fMemory.getData("key"), KyValue("two"));
  EXPECT_EQ(fMemory.getDataList("").size(), 1u);
}

TEST_F(MemoryTest, NamesTheKeyThatIsMissing) {
  const std::string text = "there is no data under the key \"nothing\"";
  EXPECT_EQ(errorText([&] { fMemory.getData("nothing"); }), text);
  EXPECT_EQ(errorText([&] { fMemory.removeData("nothing"); }), text);
}

TEST_F(MemoryTest, GivesAListInTheOrderOfTheKeys) {
  fMemory.insertData("a", 1);
  fMemory.insertData("b", 2);
  EXPECT_EQ(fMemory.getListData(KyValue::array({"b", "a", "b"})), KyValue::array({2, 1, 2}));
  EXPECT_EQ(fMemory.getListData(KyValue::array()), KyValue::array());
}

TEST_F(MemoryTest, GivesAnEmptyArrayInAListForAKeyThatIsMissing) {
  fMemory.insertData("a", 1);
  fMemory.insertData("b", 2);
  EXPECT_EQ(fMemory.getListData(KyValue::array({"a", "nothing", "b"})),
            KyValue::array({1, KyValue::array(), 2}));
  EXPECT_EQ(fMemory.getDataList("").size(), 2u) << "and stores none";
}

TEST_F(MemoryTest, AnswersAListThatFitsIntoOneAnswerAndNoLargerOne) {
  fMemory.insertData("big", std::string(900, 'x'));
  fMemory.insertData("small", 1);
  const auto list = [&](std::initializer_list<KyValue> keys) {
    return errorText([&] { fMemory.getListData(KyValue::array(keys)); });
  };
  EXPECT_EQ(list({"big", "small", "big", "missing", "big"}), "no error");
  const std::string text = list({"big", "big", "small", "big", "big"});
  EXPECT_EQ(text.rfind("the values don't fit into one answer: with \"big\" they take 3", 0), 0u)
      << text;
  EXPECT_NE(text.find(" bytes, of 3000 at most; ask for fewer at once"), std::string::npos) << text;
}

TEST(MemoryLimitsTest, LetAListHaveWhatAMessageHolds) {
  EXPECT_EQ(MemoryLimits().listBytes, Ky::KyLimits().messageBytes);
}

TEST_F(MemoryTest, RefusesAListThatIsNoListOfKeys) {
  EXPECT_NE(errorText([&] { fMemory.getListData(KyValue("a")); }), "no error");
  EXPECT_NE(errorText([&] { fMemory.getListData(KyValue::array({1})); }), "no error");
}

TEST_F(MemoryTest, ForgetsWhatIsRemoved) {
  fMemory.insertData("a", 1);
  fMemory.removeData("a");
  EXPECT_TRUE(fMemory.getDataList("").empty());
}

TEST_F(MemoryTest, ListsKeysByPrefixSorted) {
  for (const char* key : {"Face2", "Mark", "Face1", "Fac"}) fMemory.insertData(key, 1);
  EXPECT_EQ(fMemory.getDataList("Face"), (std::vector<std::string>{"Face1", "Face2"}));
  EXPECT_EQ(fMemory.getDataList(""), (std::vector<std::string>{"Fac", "Face1", "Face2", "Mark"}));
  EXPECT_TRUE(fMemory.getDataList("X").empty());
}

TEST_F(MemoryTest, HoldsSoManyKeysAndNoMore) {
  for (const char* key : {"a", "b", "c", "d"}) fMemory.insertData(key, 1);
  EXPECT_EQ(errorText([&] { fMemory.insertData("e", 1); }),
            "the memory is full: it holds 4 keys; remove some first");
  EXPECT_NO_THROW(fMemory.insertData("a", 2));
  fMemory.removeData("d");
  EXPECT_NO_THROW(fMemory.insertData("e", 1));
}

TEST_F(MemoryTest, RefusesAKeyThatIsTooLong) {
  EXPECT_EQ(errorText([&] { fMemory.insertData(std::string(17, 'k'), 1); }),
            "a key may have 16 bytes, this one has 17");
}

TEST_F(MemoryTest, HoldsSoManyBytesAndKeepsWhatItHas) {
  fMemory.insertData("a", std::string(1500, 'x'));
  const std::string text = errorText([&] { fMemory.insertData("b", std::string(900, 'y')); });
  EXPECT_EQ(text.rfind("the memory is full: \"b\" needs 9", 0), 0u) << text;
  EXPECT_NE(errorText([&] { fMemory.insertData("a", std::string(2500, 'z')); }), "no error");
  EXPECT_EQ(fMemory.getData("a"), KyValue(std::string(1500, 'x')));
  fMemory.insertData("a", 1);
  EXPECT_NO_THROW(fMemory.insertData("b", std::string(900, 'y')));
  fMemory.removeData("b");
  EXPECT_NO_THROW(fMemory.insertData("c", std::string(1500, 'y')));
}

TEST(BytesOf, CountsWhatIsInside) {
  EXPECT_GE(bytesOf(KyValue(std::string(100, 'x'))), 100u);
  EXPECT_GE(bytesOf(KyValue(Ky::KyBinary(std::vector<std::uint8_t>(100)))), 100u);
  EXPECT_GE(bytesOf(KyValue::array({KyValue::array({std::string(100, 'x')}), 1})),
            100 + 4 * sizeof(KyValue));
}

}  // namespace
}  // namespace robot
