// SPDX-License-Identifier: Apache-2.0
#include "cli/ky_command.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "ky/broker.h"
#include "ky/keys.h"
#include "support/scripted_module.h"

namespace {

using Calls = std::vector<std::string>;

struct Result {
  int code;
  std::string out;
  std::string err;
};

Result ky(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "ky");
  std::vector<const char*> argv;
  argv.reserve(arguments.size());
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  std::ostringstream out, err;
  const int code = cli::run(static_cast<int>(argv.size()), argv.data(), out, err);
  return {code, out.str(), err.str()};
}

void expectWrongUse(const Result& result, const std::string& complaint) {
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ky: " + complaint + "\nTry 'ky --help'.\n");
}

TEST(KyCommand, HelpExplainsEveryCommandAndSucceeds) {
  const Result result = ky({"--help"});
  EXPECT_EQ(result.code, 0);
  for (const char* word :
       {"keys", "ping", "list", "call", "memory", "draw", "ky image", "ky watch", "Examples:"})
    EXPECT_NE(result.out.find(word), std::string::npos) << word;
  EXPECT_EQ(ky({"call", "--help"}).code, 0);
}

TEST(KyCommand, AWrongCommandLineIsExplainedAndExitsWith2) {
  expectWrongUse(ky({}), "a command is missing, such as 'ky list'");
  expectWrongUse(ky({"nonsense"}), "The following argument was not expected: nonsense");
  expectWrongUse(ky({"list", "--nonsense"}), "The following argument was not expected: --nonsense");
  expectWrongUse(ky({"keys"}), "what about the keys? 'ky keys make', 'show' or 'trust'");
  expectWrongUse(ky({"call"}), "MODULE.METHOD is required");
  expectWrongUse(ky({"keys", "trust", "robot"}), "KEY is required");
}

TEST(KyCommand, AnAddressThatIsNoneIsAWrongCommandLine) {
  const Result result = ky({"ping", "--robot", "robot:port"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("--robot: 'robot:port'"), std::string::npos) << result.err;
}

TEST(KyCommand, AMethodWithoutItsModuleIsAWrongCommandLine) {
  for (const char* target : {"ping", ".ping", "KyMemory."})
    expectWrongUse(ky({"call", target}), "'" + std::string(target) + "' is not MODULE.METHOD");
}

TEST(KyCommand, ARobotThatIsNotThereFailsWith1) {
  const Result result = ky({"list", "--robot", "127.0.0.1:1"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err.find("ky: can't reach the robot at 127.0.0.1:1: "), 0u) << result.err;
}

class KyCommandOnRobot : public testing::Test {
 protected:
  KyCommandOnRobot() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    fBroker = Ky::KyBroker::create(options);
    fMemory = Ky::KyModule::createModule<ScriptedModule>(fBroker, "KyMemory", fCalls);
  }
  ~KyCommandOnRobot() override { fBroker->shutdown(); }

  Result onRobot(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--robot", fBroker->address().toString()});
    return ky(arguments);
  }

  std::shared_ptr<CallList> fCalls = std::make_shared<CallList>();
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<ScriptedModule> fMemory;
};

TEST_F(KyCommandOnRobot, PingSaysWhoAnsweredAndHowFast) {
  const Result result = onRobot({"ping"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out.find(fBroker->address().toString() + " answered in "), 0u) << result.out;
  EXPECT_NE(result.out.find(" ms\n"), std::string::npos) << result.out;
}

// A module with a method that explains itself.
class Adder : public Ky::KyModule {
 public:
  explicit Adder(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(std::move(broker), "Adder") {
    setModuleDescription("Adds.\nAnd no more.");
    functionName("add", getName(), "The sum.");
    addParam("a", "one number");
    addParam("b", "another");
    setReturn("sum", "of both");
    bindMethod(&Adder::add);
  }
  int add(int a, int b) { return a + b; }
};

TEST_F(KyCommandOnRobot, ListPrintsEveryModuleWithItsDescription) {
  const auto adder = Ky::KyModule::createModule<Adder>(fBroker);
  const Result result = onRobot({"list"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(("\n" + result.out).find("\nAdder     Adds.\n          And no more.\nKyMemory  "),
            std::string::npos)
      << result.out;
}

TEST_F(KyCommandOnRobot, ListOfAModulePrintsItsMethods) {
  const auto adder = Ky::KyModule::createModule<Adder>(fBroker);
  const Result result = onRobot({"list", "Adder"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(result.out.find("\nadd(a: int, b: int) -> int "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("  The sum.\n"), std::string::npos) << result.out;
  EXPECT_EQ(onRobot({"list", "Nobody"}).err,
            "ky: Nobody.getMethodList: the robot has no module of this name\n");
}

TEST_F(KyCommandOnRobot, WithJsonEveryResultIsOneLineOfJson) {
  const auto adder = Ky::KyModule::createModule<Adder>(fBroker);
  EXPECT_EQ(onRobot({"list", "--json"}).out.find("[[\"Adder\",\"Adds.\\nAnd no more.\"],"), 0u);
  EXPECT_EQ(onRobot({"ping", "--json"}).out.find("[\"" + fBroker->address().toString() + "\","),
            0u);
  fMemory->answer("getDataList", Ky::KyValue::array({"a", "b"}));
  EXPECT_EQ(onRobot({"memory", "list", "--json"}).out, "[\"a\",\"b\"]\n");
}

TEST_F(KyCommandOnRobot, MemoryListPrintsTheKeysThatBeginSo) {
  fMemory->answer("getDataList", Ky::KyValue::array({"ab", "abc"}));
  EXPECT_EQ(onRobot({"memory", "list", "ab"}).out, "ab\nabc\n");
  EXPECT_EQ(fCalls->calls(), Calls({"KyMemory.getDataList(\"ab\")"}));
}

TEST_F(KyCommandOnRobot, MemoryGetsSetsAndRemovesValues) {
  fMemory->answer("getData", Ky::KyValue::array({1, 2.0}));
  fMemory->answer("insertData", Ky::KyValue());
  fMemory->answer("removeData", Ky::KyValue());
  EXPECT_EQ(onRobot({"memory", "get", "key"}).out, "[1,2.0]\n");
  EXPECT_EQ(onRobot({"memory", "set", "key", "[1, \"two\"]"}).code, 0);
  EXPECT_EQ(onRobot({"memory", "remove", "key"}).code, 0);
  EXPECT_EQ(fCalls->calls(),
            Calls({"KyMemory.getData(\"key\")", "KyMemory.insertData(\"key\", [1, \"two\"])",
                   "KyMemory.removeData(\"key\")"}));
}

TEST_F(KyCommandOnRobot, MemoryWatchPrintsEachNewValueOnceAndWaitsForAKeyThatIsNotThere) {
  int asked = 0;
  fMemory->answer("getDataList", Ky::KyValue::array({}));
  fMemory->answer("getData", [&](const Ky::KyValue::Array&) -> Ky::KyValue {
    if (++asked == 1) throw Ky::KyError("there is no data");
    return asked < 4 ? Ky::KyValue(1) : Ky::KyValue(2);
  });
  const Result result = onRobot({"memory", "watch", "key", "--every", "0.001", "--count", "2"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "1\n2\n");
}

TEST_F(KyCommandOnRobot, MemoryWatchOfSeveralKeysNamesEachAndTellsOfWhatIsRemoved) {
  int asked = 0;
  fMemory->answer("getDataList", Ky::KyValue::array({}));
  fMemory->answer("getData", [&](const Ky::KyValue::Array& arguments) -> Ky::KyValue {
    if (arguments.at(0) == Ky::KyValue("b")) return "two";
    if (++asked > 2) throw Ky::KyError("there is no data");
    return 1;
  });
  const std::string text = "a 1\nb \"two\"\na null\n";
  EXPECT_EQ(onRobot({"memory", "watch", "a", "b", "--count", "3"}).out, text);
}

// A memory that tells what changes.
class TellingMemory : public Ky::KyModule {
 public:
  explicit TellingMemory(boost::shared_ptr<Ky::KyBroker> broker)
      : KyModule(std::move(broker), "KyMemory") {
    functionName("openChanges", getName(), "");
    addParam("stream", "");
    addParam("keys", "");
    bindMethod(&TellingMemory::openChanges);
    functionName("getData", getName(), "");
    addParam("key", "");
    bindMethod(&TellingMemory::getData);
    offer("openChanges");
  }
  void openChanges(const Ky::KyPeer& caller, std::int64_t stream, const Ky::KyValue&) {
    fSender = getParentBroker()->sendStream(caller, stream);
    fSender->send(Ky::KyValue::array({Ky::KyValue::array({"a", 1}),
                                      Ky::KyValue::array({"b", Ky::KyValue::array({2.5})}),
                                      Ky::KyValue::array({"a", Ky::KyValue()})}));
  }
  std::string getData(const std::string&) { return "looked at"; }
  void stop() override { fSender.reset(); }

 private:
  std::unique_ptr<Ky::KyStreamSender> fSender;
};

TEST_F(KyCommandOnRobot, MemoryWatchIsToldByARobotThatCanAndLooksWhereThatIsWished) {
  fBroker->unregisterModule("KyMemory");
  Ky::KyModule::createModule<TellingMemory>(fBroker);
  EXPECT_EQ(onRobot({"memory", "watch", "a", "b", "--count", "3"}).out, "a 1\nb [2.5]\na null\n");
  EXPECT_EQ(onRobot({"memory", "watch", "--count", "2", "a", "b", "--json"}).out,
            "[\"a\",1]\n[\"b\",[2.5]]\n");
  EXPECT_EQ(onRobot({"memory", "watch", "a", "--count", "1"}).out, "1\n");
  EXPECT_EQ(onRobot({"memory", "watch", "a", "--count", "1", "--every", "0.1"}).out,
            "\"looked at\"\n");
}

TEST_F(KyCommandOnRobot, DrawWritesTheFiguresAndTellsTheViewer) {
  fMemory->answer("insertData", Ky::KyValue());
  const auto viewer = Ky::KyModule::createModule<ScriptedModule>(fBroker, "Periscope", fCalls);
  viewer->answer("subscribeLog", Ky::KyValue());
  const std::string figures = "[[0.5, 0.7, 20, 2, 0, 0, 0, 0, \"this is a test\"]]";
  EXPECT_EQ(onRobot({"draw", "myObjects", figures}).code, 0);
  EXPECT_EQ(fCalls->calls(), Calls({"KyMemory.insertData(\"myObjects\", " + figures + ")",
                                    "Periscope.subscribeLog(\"myObjects\")"}));
}

TEST_F(KyCommandOnRobot, DrawRefusesWhatTheViewerCouldNotDraw) {
  for (const char* figures :
       {"7", "[7]", "[[0.5, 0.7, 20, 2, 0, 0, 0, 0]]", "[[0.5, 0.7, 20, 2.5, 0, 0, 0, 0, \"\"]]",
        "[[\"x\", 0.7, 20, 2, 0, 0, 0, 0, \"\"]]", "[[0.5, 0.7, 20, 2, 0, 0, 0, 0, 1]]"})
    EXPECT_EQ(onRobot({"draw", "myObjects", figures}).code, 2) << figures;
  EXPECT_TRUE(fCalls->calls().empty());
}

TEST_F(KyCommandOnRobot, CallPassesJsonOnAndPrintsTheResultAsJson) {
  fMemory->answer("swap", [](const Ky::KyValue::Array& arguments) {
    return Ky::KyValue::array({arguments.at(1), arguments.at(0)});
  });
  const Result result = onRobot({"call", "KyMemory.swap", "[1, -2.5, \"three\"]", "-4"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "[-4,[1,-2.5,\"three\"]]\n");
}

TEST_F(KyCommandOnRobot, CallPrintsTheRobotsErrorAndFailsWith1) {
  fMemory->answer("getData", [](const Ky::KyValue::Array&) -> Ky::KyValue {
    throw Ky::KyError("KyMemory", "getData", "there is no key 'x'");
  });
  const Result result = onRobot({"call", "KyMemory.getData", "\"x\""});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ky: KyMemory.getData: there is no key 'x'\n");
}

TEST_F(KyCommandOnRobot, CallReachesNothingWhenAnArgumentIsWrong) {
  fMemory->answer("insertData", Ky::KyValue());
  expectWrongUse(onRobot({"call", "KyMemory.insertData", "\"key\"", "{}"}),
                 "'{}': there are no objects, {..}, among the robot's values; use arrays");
  EXPECT_TRUE(fCalls->calls().empty());
}

// A robot that was started with --insecure, and a user who has keys.
class KyCommandBeyondLoopback : public testing::Test {
 protected:
  KyCommandBeyondLoopback() {
    std::string name = (std::filesystem::temp_directory_path() / "ky-config.XXXXXX").string();
    fFolder = mkdtemp(name.data());
    setenv("XDG_CONFIG_HOME", fFolder.c_str(), 1);
    fKeys.emplace(Ky::KyKeyStore::defaultFolder()).create();
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"0.0.0.0", 0};  // counts as beyond loopback, where it is reached
    options.insecure = true;
    fBroker = Ky::KyBroker::create(options);
  }
  ~KyCommandBeyondLoopback() override {
    fBroker->shutdown();
    std::filesystem::remove_all(fFolder);
  }

  Result ping(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"ping", "--robot", fBroker->address().toString()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return ky(arguments);
  }

  std::filesystem::path fFolder;
  std::optional<Ky::KyKeyStore> fKeys;
  boost::shared_ptr<Ky::KyBroker> fBroker;
};

TEST_F(KyCommandBeyondLoopback, WithoutKeysARobotIsReachedWhenThatIsSaid) {
  const Result result = ping({"--insecure"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(ping({"--insecure", "--keys", fKeys->folder()}).code, 2);
}

TEST_F(KyCommandBeyondLoopback, AFailureSaysHowToDoWithoutKeys) {
  const Result unknown = ping();
  EXPECT_EQ(unknown.code, 1);
  EXPECT_NE(unknown.err.find("'ky keys trust', or connect with --insecure"), std::string::npos)
      << unknown.err;
  fKeys->add(fBroker->address().toString(), Ky::KyKeyPair::generate().publicKey);
  const Result refused = ping();
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.err.find("'ky --insecure'"), std::string::npos) << refused.err;
}

class KyKeysCommand : public testing::Test {
 protected:
  KyKeysCommand() {
    std::string name = (std::filesystem::temp_directory_path() / "ky-keys.XXXXXX").string();
    fFolder = mkdtemp(name.data());
  }
  ~KyKeysCommand() override { std::filesystem::remove_all(fFolder); }

  Result keys(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "keys");
    arguments.insert(arguments.end(), {"--keys", (fFolder / "keys").string()});
    return ky(arguments);
  }

  std::filesystem::path fFolder;
};

TEST_F(KyKeysCommand, MakePrintsThePublicKeyAndShowPrintsItAgain) {
  const Result made = keys({"make"});
  EXPECT_EQ(made.code, 0) << made.err;
  const Ky::KyKeyPair pair = Ky::KyKeyStore(fFolder / "keys").own();
  EXPECT_EQ(made.out, pair.publicKey + "\n");
  EXPECT_EQ(keys({"show"}).out, made.out);
}

TEST_F(KyKeysCommand, MakeNeverReplacesKeys) {
  const Result made = keys({"make"});
  const Result again = keys({"make"});
  EXPECT_EQ(again.code, 1);
  EXPECT_NE(again.err, "");
  EXPECT_EQ(keys({"show"}).out, made.out);
}

TEST_F(KyKeysCommand, ShowWithoutKeysFailsAndSaysWhatToDo) {
  const Result result = keys({"show"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("ky keys make"), std::string::npos) << result.err;
}

TEST_F(KyKeysCommand, TrustMakesAPeersKeyKnownUnderItsName) {
  const std::string key = Ky::KyKeyPair::generate().publicKey;
  const Result result = keys({"trust", "192.168.1.20:9559", key});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "The key of 192.168.1.20:9559 is known now.\n");
  EXPECT_EQ(Ky::KyKeyStore(fFolder / "keys").known("192.168.1.20:9559"), key);
}

TEST_F(KyKeysCommand, TrustRefusesWhatIsNoKeyOrNoName) {
  EXPECT_EQ(keys({"trust", "robot", "too short"}).code, 1);
  EXPECT_EQ(keys({"trust", "../robot", Ky::KyKeyPair::generate().publicKey}).code, 1);
  EXPECT_FALSE(std::filesystem::exists(fFolder / "keys" / "known" / "robot.public"));
}

}  // namespace
