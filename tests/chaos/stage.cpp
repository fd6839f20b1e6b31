// SPDX-License-Identifier: Apache-2.0
#include "stage.h"

namespace {

// Longer than any module is held.
constexpr std::chrono::seconds kDeadline{15};

Ky::KyValue callAt(const Ky::KyAddress& robot, const std::string& module, const std::string& method,
                   const Ky::KyValue::Array& arguments) {
  Ky::KyBrokerOptions options;
  options.name = "ChaosBroker";
  options.parent = robot;
  const auto broker = Ky::KyBroker::create(std::move(options));
  try {
    auto answer = broker->call(module, method, arguments, kDeadline);
    broker->shutdown();
    return answer;
  } catch (const Ky::KyError&) {
    broker->shutdown();
    throw;
  }
}

}  // namespace

Stage::Stage() {
  startRobot();
}

Stage::~Stage() {
  fRobot.reset();
  waitForAnswer();
}

Ky::KyAddress Stage::address() const {
  return {"127.0.0.1", fLink->port()};
}

void Stage::startRobot() {
  fRobot.reset();
  fRobot = std::make_unique<KyrobotProcess>();
  fRobotAddress = fRobot->address();
  if (fLink)
    fLink->setRobotPort(fRobotAddress.port);
  else
    fLink = std::make_unique<Link>(fRobotAddress.port);
}

Ky::KyValue Stage::call(const std::string& module, const std::string& method,
                        const Ky::KyValue::Array& arguments) {
  return callAt(fRobotAddress, module, method, arguments);
}

void Stage::callLater(const std::string& module, const std::string& method,
                      const Ky::KyValue::Array& arguments) {
  waitForAnswer();
  fAnswer = std::async(std::launch::async, [robot = fRobotAddress, module, method, arguments] {
    return callAt(robot, module, method, arguments);
  });
}

bool Stage::isAnswered() const {
  return !fAnswer.valid() || fAnswer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

void Stage::waitForAnswer() {
  if (!fAnswer.valid()) return;
  try {
    fAnswer.get();
  } catch (const Ky::KyError&) {
    // A robot that has gone meanwhile answers nothing.
  }
}
