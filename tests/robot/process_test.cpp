// SPDX-License-Identifier: Apache-2.0
#include "support/process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>

#include "support/wait.h"

namespace {

TEST(Process, GivesTheExitCode) {
  EXPECT_EQ(Process("sh", {"-c", "exit 3"}).waitForExit(), 3);
}

TEST(Process, GivesTheSignalThatEndedIt) {
  Process process("sleep", {"600"});
  process.signal(SIGTERM);
  EXPECT_EQ(process.waitForExit(), -SIGTERM);
}

TEST(Process, KeepsBothItsOutputs) {
  Process process("sh", {"-c", "echo out; echo err >&2; printf rest"});
  EXPECT_EQ(process.waitForExit(), 0);
  EXPECT_EQ(process.output(), "out\nrest");
  EXPECT_EQ(process.errors(), "err\n");
}

TEST(Process, WaitsForALineThatIsStillToCome) {
  Process process("sh", {"-c", "echo one; read line; echo \"two $line\""});
  EXPECT_EQ(process.waitForLine("one"), "one");
  EXPECT_EQ(process.waitForLine("two"), "two ") << "its standard input is empty";
  EXPECT_EQ(process.waitForLine("three"), std::nullopt) << "it has ended without it";
}

TEST(Process, SaysThatAProgramCannotBeStarted) {
  EXPECT_THROW(Process("/nowhere/program", {}), std::runtime_error);
}

TEST(Process, AddsToTheEnvironment) {
  Process process("sh", {"-c", "echo $GREETING in $HOME"},
                  {{"GREETING", "hello"}, {"HOME", "/there"}});
  EXPECT_EQ(process.waitForLine("in"), "hello in /there");
}

TEST(Process, IsNotHeldUpByOutputThatNobodyReads) {
  Process process("sh", {"-c", "head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2"});
  EXPECT_EQ(process.waitForExit(), 0);
  EXPECT_EQ(process.output().size() + process.errors().size(), 2000000u);
}

TEST(Process, TakesItsChildrenAlongWhenItGoes) {
  pid_t child = 0;
  {
    Process process("sh", {"-c", "sleep 600 & echo $!; wait"});
    child = std::stoi(process.waitForLine("").value());
    EXPECT_EQ(kill(child, 0), 0);
  }
  // Gone, or a zombie that nobody has collected yet.
  EXPECT_TRUE(waitUntil([&] {
    Process state("ps", {"-o", "stat=", "-p", std::to_string(child)});
    state.waitForExit();
    return state.output().empty() || state.output()[0] == 'Z';
  }));
}

}  // namespace
