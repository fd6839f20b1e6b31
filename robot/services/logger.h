// SPDX-License-Identifier: Apache-2.0
// The module "KyLogger": lets everybody write into the robot's log.
#pragma once

#include <string>

#include "ky/module.h"
#include "zu/log.h"

namespace robot {

// A line's category is the name of the module that has something to say, its function the name of
// the calling program. Long texts are cut, and line breaks become blanks: one call is one line.
class Logger : public Ky::KyModule {
 public:
  static constexpr std::size_t kMaxName = 64;    // bytes
  static constexpr std::size_t kMaxText = 4096;  // bytes

  explicit Logger(boost::shared_ptr<Ky::KyBroker> broker);

  void error(const Ky::KyPeer& caller, const std::string& module, const std::string& text);
  void warn(const Ky::KyPeer& caller, const std::string& module, const std::string& text);
  void info(const Ky::KyPeer& caller, const std::string& module, const std::string& text);
  void debug(const Ky::KyPeer& caller, const std::string& module, const std::string& text);

 private:
  void describe(const std::string& method, const std::string& what);
};

}  // namespace robot
