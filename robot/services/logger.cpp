// SPDX-License-Identifier: Apache-2.0
#include "robot/services/logger.h"

namespace robot {
namespace {

std::string oneLine(std::string text, std::size_t limit) {
  if (text.size() > limit) {
    text.resize(limit);
    text += "...";
  }
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  return text;
}

void writeLine(zu::log::Level level, const Ky::KyPeer& caller, const std::string& module,
               const std::string& text) {
  zu::log::write(level, oneLine(module, Logger::kMaxName), oneLine(caller.name, Logger::kMaxName),
                 oneLine(text, Logger::kMaxText));
}

}  // namespace

Logger::Logger(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(std::move(broker), "KyLogger") {
  setModuleDescription("Writes lines into the robot's log.");
  describe("error", "Something failed.");
  bindMethod(&Logger::error);
  describe("warn", "Something is not as it should be.");
  bindMethod(&Logger::warn);
  describe("info", "Something worth knowing.");
  bindMethod(&Logger::info);
  describe("debug", "Something for developers.");
  bindMethod(&Logger::debug);
}

void Logger::describe(const std::string& method, const std::string& what) {
  functionName(method, getName(), what);
  addParam("module", "who says so");
  addParam("text", "what to write");
}

void Logger::error(const Ky::KyPeer& caller, const std::string& module, const std::string& text) {
  writeLine(zu::log::Level::error, caller, module, text);
}

void Logger::warn(const Ky::KyPeer& caller, const std::string& module, const std::string& text) {
  writeLine(zu::log::Level::warning, caller, module, text);
}

void Logger::info(const Ky::KyPeer& caller, const std::string& module, const std::string& text) {
  writeLine(zu::log::Level::info, caller, module, text);
}

void Logger::debug(const Ky::KyPeer& caller, const std::string& module, const std::string& text) {
  writeLine(zu::log::Level::debug, caller, module, text);
}

}  // namespace robot
