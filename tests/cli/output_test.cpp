// SPDX-License-Identifier: Apache-2.0
// The command's output, where it goes to a file that takes no more.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <memory>
#include <string>

#include "ky/broker.h"
#include "support/process.h"
#include "support/scripted_module.h"

namespace {

class Output : public testing::Test {
 protected:
  Output() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    fBroker = Ky::KyBroker::create(options);
    fMemory = Ky::KyModule::createModule<ScriptedModule>(fBroker, "KyMemory",
                                                         std::make_shared<CallList>());
  }
  ~Output() override { fBroker->shutdown(); }

  void expectFailureOnFullDisk(const std::string& command) const {
    Process shell("/bin/sh", {"-c", "exec " KY " " + command + " >/dev/full"});
    EXPECT_EQ(shell.waitForExit(), 1) << command;
    EXPECT_EQ(shell.errors().find("ky: can't write the output: "), 0u)
        << command << ": " << shell.errors();
  }
  void expectFailureOnRobot(const std::string& command) const {
    expectFailureOnFullDisk(command + " --robot " + fBroker->address().toString());
  }

  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<ScriptedModule> fMemory;
};

TEST_F(Output, ThatCannotBeWrittenIsAFailure) {
  fMemory->answer("getDataList", Ky::KyValue::array({"a"}));
  fMemory->answer("getData", 1);
  for (const char* command : {"--help", "--version"}) expectFailureOnFullDisk(command);
  for (const char* command :
       {"list", "ping", "call KyMemory.getData", "memory list", "memory get a"})
    expectFailureOnRobot(command);
}

TEST_F(Output, ThatCannotBeWrittenEndsAWatch) {
  fMemory->answer("getData", 1);
  expectFailureOnRobot("memory watch a");
}

TEST_F(Output, ThatIsMoreThanABufferIsMissedToo) {
  fMemory->answer("getData", std::string(1 << 20, 'x'));
  expectFailureOnRobot("memory get a");
}

}  // namespace
