// SPDX-License-Identifier: Apache-2.0
#include "robot/services/logger.h"

#include <gtest/gtest.h>

#include "in_process_robot.h"
#include "ky/logger_proxy.h"
#include "support/log_capture.h"

namespace robot {
namespace {

class LoggerTest : public testing::Test {
 protected:
  InProcessRobot fRobot;
  boost::shared_ptr<Logger> fModule = Ky::KyModule::createModule<Logger>(fRobot.broker());
  Ky::KyLoggerProxy fLogger{fRobot.connect("desktop")};
  LogCapture fLog;
};

TEST_F(LoggerTest, WritesUnderTheModulesNameAtTheMethodsLevel) {
  fLogger.error("Periscope", "one");
  fLogger.warn("Periscope", "two");
  fLogger.info("Periscope", "three");
  fLogger.debug("Periscope", "four");
  EXPECT_EQ(fLog.lines("Periscope"),
            (std::vector<std::string>{"error desktop: one", "warning desktop: two",
                                      "info desktop: three", "debug desktop: four"}));
}

TEST_F(LoggerTest, CutsLongTexts) {
  fLogger.info(std::string(100, 'm'), std::string(5000, 't'));
  const auto lines = fLog.lines(std::string(64, 'm') + "...");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0], "info desktop: " + std::string(4096, 't') + "...");
}

TEST_F(LoggerTest, MakesOneLineOfOneCall) {
  fLogger.info("Periscope", "first\nsecond\x1b[31m");
  EXPECT_EQ(fLog.lines("Periscope"), std::vector<std::string>{"info desktop: first second [31m"});
}

}  // namespace
}  // namespace robot
