// SPDX-License-Identifier: Apache-2.0
// The real robot, as a program of its own.
#pragma once

#include <stdexcept>

#include "ky/broker.h"
#include "support/process.h"
#include "test_folder.h"

// Its home is a folder of its own.
class KyrobotProcess {
 public:
  explicit KyrobotProcess(std::vector<std::string> options = {"--port", "0"},
                          Process::Environment environment = {})
      : fProcess(KYROBOT, std::move(options), withHome(std::move(environment))) {}

  Process& process() { return fProcess; }
  const TestFolder& folder() const { return fFolder; }
  // Where a file of the robot's is: one whose path begins with "/home/tam/".
  std::string onDisk(const std::string& path) const {
    return folder() / ("kyrobot/" + path.substr(std::string("/home/tam/").size()));
  }

  // Waits until it listens.
  Ky::KyAddress address() {
    const std::string lead = "kyrobot: listening on ";
    const auto line = fProcess.waitForLine(lead);
    if (!line) throw std::runtime_error("kyrobot doesn't listen: " + fProcess.errors());
    return Ky::KyAddress::parse(line->substr(lead.size()));
  }

  boost::shared_ptr<Ky::KyBroker> connect() {
    Ky::KyBrokerOptions options;
    options.name = "PeriscopeBroker";
    options.parent = address();
    return Ky::KyBroker::create(std::move(options));
  }

 private:
  Process::Environment withHome(Process::Environment environment) const {
    environment["XDG_DATA_HOME"] = fFolder.path().string();
    return environment;
  }

  TestFolder fFolder;
  Process fProcess;
};
