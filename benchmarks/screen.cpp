// SPDX-License-Identifier: Apache-2.0
#include "screen.h"

#include <QByteArray>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {
namespace {

constexpr const char* kPlatform = "QT_QPA_PLATFORM";

std::unique_ptr<Process> startServer() {
  try {
    return std::make_unique<Process>(
        "Xvfb", std::vector<std::string>{"-displayfd", "1", "-screen", "0", "1920x1080x24",
                                         "-nolisten", "tcp"});
  } catch (const std::runtime_error& error) {
    throw std::runtime_error("there is no display, and " + std::string(error.what()) +
                             " (scripts/install-dependencies installs it)");
  }
}

// It writes the number that it has found free.
std::string displayOf(Process& server) {
  const std::optional<std::string> number = server.waitForLine("");
  if (!number) throw std::runtime_error("there is no display, and Xvfb offers none");
  return ":" + *number;
}

}  // namespace

Screen::Screen() {
  if (!qEnvironmentVariableIsEmpty(kPlatform)) return;
  if (qEnvironmentVariableIsEmpty("DISPLAY")) {
    fServer = startServer();
    qputenv("DISPLAY", QByteArray::fromStdString(displayOf(*fServer)));
  }
  qputenv(kPlatform, "xcb");
}

}  // namespace bench
