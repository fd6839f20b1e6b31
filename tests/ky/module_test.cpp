// SPDX-License-Identifier: Apache-2.0
#include "ky/module.h"

#include <gtest/gtest.h>

#include "ky/proxy.h"

using namespace Ky;

namespace {

class Module : public testing::Test {
 protected:
  Module() {
    KyBrokerOptions options;
    options.name = "robot";
    options.listen = KyAddress{"127.0.0.1", 0};
    robot = KyBroker::create(options);
  }
  ~Module() override { robot->shutdown(); }
  boost::shared_ptr<KyBroker> robot;
};

class Described : public KyModule {
 public:
  explicit Described(boost::shared_ptr<KyBroker> broker)
      : KyModule(std::move(broker), "Described") {
    setModuleDescription("For tests.");
    functionName("mix", getName(), "Mixes.");
    addParam("count", "how many");
    addParam("word", "which");
    setReturn("mixture", "of both");
    bindMethod(&Described::mix);
    functionName("mix", getName(), "Mixes one.");
    addParam("count", "how many");
    bindMethod(&Described::mixOne);
    functionName("known", getName(), "A const method that wants to know its caller.");
    addParam("value", "any");
    bindMethod(&Described::known);
  }
  std::string mix(int count, const std::string& word) { return word + std::to_string(count); }
  int mixOne(int count) { return count; }
  std::string known(const KyPeer& peer, const KyValue& value) const {
    return peer.name + value.toString();
  }
};

TEST_F(Module, DescribesItselfAndItsMethods) {
  KyModule::createModule<Described>(robot);
  const auto proxy = robot->getProxy("Described");
  const auto names = proxy->call<std::vector<std::string>>("getMethodList");
  EXPECT_EQ(names, (std::vector<std::string>{"getMethodList", "getMethodHelp", "getModuleHelp",
                                             "ping", "version", "mix", "mix", "known"}));
  EXPECT_EQ(proxy->call<KyValue>("getMethodHelp", "mix").toString(),
            R"(["mix", "Mixes.", [["count", "int", "how many"], ["word", "string", "which"]], )"
            R"(["mixture", "string", "of both"]])");
  EXPECT_EQ(proxy->call<KyValue>("getModuleHelp")[0], KyValue("For tests."));
  EXPECT_TRUE(proxy->call<bool>("ping"));
  EXPECT_FALSE(proxy->call<std::string>("version").empty());
  EXPECT_THROW(proxy->call<KyValue>("getMethodHelp", "missing"), KyError);
}

TEST_F(Module, ChoosesAmongMethodsOfOneNameByTheNumberOfArguments) {
  KyModule::createModule<Described>(robot);
  const auto proxy = robot->getProxy("Described");
  EXPECT_EQ(proxy->call<std::string>("mix", 2, "x"), "x2");
  EXPECT_EQ(proxy->call<int>("mix", 2), 2);
}

TEST_F(Module, DoesNotPublishTheCaller) {
  KyModule::createModule<Described>(robot);
  EXPECT_EQ(robot->getProxy("Described")->call<std::string>("known", 7), "robot7");
}

class Misdescribed : public KyModule {
 public:
  explicit Misdescribed(boost::shared_ptr<KyBroker> broker)
      : KyModule(std::move(broker), "Misdescribed") {
    functionName("one", getName(), "Takes one.");
    bindMethod(&Misdescribed::one);
  }
  void one(int) {}
};

TEST_F(Module, RefusesADescriptionThatDoesNotFitTheMethod) {
  EXPECT_THROW(KyModule::createModule<Misdescribed>(robot), KyError);
  EXPECT_FALSE(robot->isModulePresent("Misdescribed"));
}

class Failing : public KyModule {
 public:
  Failing(boost::shared_ptr<KyBroker> broker, std::vector<std::string>* steps)
      : KyModule(std::move(broker), "Failing"), fSteps(steps) {
    fSteps->push_back("construct");
  }
  ~Failing() override { fSteps->push_back("destroy"); }
  void init() override {
    fSteps->push_back(getParentBroker()->isModulePresent("Failing") ? "init registered" : "init");
    throw KyError("Failing", "init", "no");
  }
  void exit() override { fSteps->push_back("exit"); }

 private:
  std::vector<std::string>* fSteps;
};

TEST_F(Module, IsLeftAndForgottenWhenItsInitFails) {
  std::vector<std::string> steps;
  try {
    KyModule::createModule<Failing>(robot, &steps);
    FAIL();
  } catch (const KyError& error) {
    EXPECT_EQ(error.toString(), "Failing.init: no");
  }
  EXPECT_FALSE(robot->isModulePresent("Failing"));
  EXPECT_EQ(steps, (std::vector<std::string>{"construct", "init registered", "exit", "destroy"}));
}

}  // namespace
