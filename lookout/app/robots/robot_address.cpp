// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_address.h"

#include <QCoreApplication>

#include "lookout/robot_broker.h"

namespace Lookout {
namespace {

QString addressMissing() {
  return QCoreApplication::translate("RobotAddress", "Type the robot's name or IP address.");
}

QString addressWrong(const QString& typed) {
  return QCoreApplication::translate(
             "RobotAddress", "'%1' is no robot's address: robots listen on ports 1 to 65535")
      .arg(typed);
}

}  // namespace

Ky::KyAddress robotAddress(const QString& text, int port) {
  const std::string typed = text.trimmed().toStdString();
  if (typed.empty()) throw Ky::KyError(addressMissing().toStdString());
  Ky::KyAddress address = Ky::KyAddress::parse(typed);
  if (typed == address.host || typed == "[" + address.host + "]") address.port = port;
  if (address.port == 0) throw Ky::KyError(addressWrong(text.trimmed()).toStdString());
  return address;
}

bool isExposed(const Ky::KyAddress& robot) {
  return !robot.isLoopback() && !robotBrokerOptions({}, robot).keys;
}

}  // namespace Lookout
