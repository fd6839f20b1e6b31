// SPDX-License-Identifier: Apache-2.0
// The ball detector's named parameters.
#include "ky/proxy.h"
#include "viewer/core/module.h"
#include "zu/log.h"

bool Module::setUraballParam(const std::string& name, Ky::KyValue& value) const {
  const zu::log::Subject robot(fRobot);
  try {
    getParentBroker()->getProxy("KyBallDetection")->callVoid("setParam", name, value);
    return true;
  } catch (const Ky::KyError& error) {
    zu::log::error("periscope", "setUraballParam") << error.what();
    return false;
  }
}

bool Module::getUraballParam(const std::string& name, Ky::KyValue& value) const {
  const zu::log::Subject robot(fRobot);
  try {
    value = getParentBroker()->getProxy("KyBallDetection")->call<Ky::KyValue>("getParam", name);
    return true;
  } catch (const Ky::KyError& error) {
    zu::log::error("periscope", "getUraballParam") << error.what();
    return false;
  }
}
