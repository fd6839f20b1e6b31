// SPDX-License-Identifier: Apache-2.0
// What Bash offers after "ky", with the real command asking a real robot.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "ky/broker.h"
#include "support/process.h"
#include "support/scripted_module.h"

namespace {

class Completion : public testing::Test {
 protected:
  Completion() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    fBroker = Ky::KyBroker::create(options);
    fMemory = Ky::KyModule::createModule<ScriptedModule>(fBroker, "KyMemory", fCalls);
    fMemory->answer("getDataList", Ky::KyValue::array({"ball", "face"}));
    fPlain = Ky::KyModule::createModule<Ky::KyModule>(fBroker, "Plain");
  }
  ~Completion() override { fBroker->shutdown(); }

  // The offers for the last of the words that follow "ky", one a line.
  std::string offersFor(const std::string& words) const {
    const std::string robot = "--robot " + fBroker->address().toString();
    Process bash("/bin/bash",
                 {"-c", "source " COMPLETION "; COMP_WORDS=(" KY " " + robot + " " + words +
                            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _ky; "
                            "printf '%s\\n' \"${COMPREPLY[@]}\""});
    EXPECT_EQ(bash.waitForExit(), 0) << bash.errors();
    return bash.output();
  }

  std::shared_ptr<CallList> fCalls = std::make_shared<CallList>();
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<ScriptedModule> fMemory;
  boost::shared_ptr<Ky::KyModule> fPlain;  // with the methods that all have
};

TEST_F(Completion, OffersCommandsOptionsAndWhatTheRobotHas) {
  const struct {
    const char* words;
    const char* offers;
  } cases[] = {
      {"c", "call\n"},
      {"memory w", "watch\n"},
      {"memory watch --e", "--every\n"},
      {"memory watch ball f", "face\n"},
      {"memory get f", "face\n"},
      {"draw b", "ball\n"},
      {"list KyM", "KyMemory\n"},
      {"call KyM", "KyMemory.\n"},
      {"call Plain.pi", "Plain.ping\n"},
      {"keys t", "trust\n"},
      {"im", "image\n"},
      {"watch --s", "--seconds\n"},
      {"image --s", "\n"},
      {"image a.png --pictures e", "exact\n"},
      {"watch --fps 5 " MAN_PAGE, MAN_PAGE "\n"},
      {"call KyMemory.ping --js", "--json\n"},
      {"call KyMemory.ping --ins", "--insecure\n"},
  };
  for (const auto& one : cases) EXPECT_EQ(offersFor(one.words), one.offers) << one.words;
}

TEST_F(Completion, OffersNothingOfARobotThatIsNotThere) {
  fBroker->shutdown();
  EXPECT_EQ(offersFor("memory get f"), "\n");
}

TEST(ManPage, ExplainsEveryCommand) {
  std::stringstream page;
  page << std::ifstream(MAN_PAGE).rdbuf();
  for (const char* command : {".B ping", ".BR list", ".BI call", "memory list", "memory get",
                              "memory set", "memory remove", "memory watch", ".BI draw",
                              ".BI image", ".BI watch", "keys make", "keys show", "keys trust"})
    EXPECT_NE(page.str().find(command), std::string::npos) << command;
}

}  // namespace
