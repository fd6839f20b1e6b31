// SPDX-License-Identifier: Apache-2.0
// Collects what is logged while it lives. Thread-safe.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "zu/log.h"

class LogCapture {
 public:
  LogCapture();

  std::vector<zu::log::Record> records() const;
  // "error getNext: text" for every record of the category, in order.
  std::vector<std::string> lines(const std::string& category = "periscope") const;
  void clear();

 private:
  mutable std::mutex fMutex;
  std::vector<zu::log::Record> fRecords;
  zu::log::Listener fListener;
};
