// SPDX-License-Identifier: Apache-2.0
#include "support/log_capture.h"

LogCapture::LogCapture()
    : fListener([this](const zu::log::Record& record) {
        const std::lock_guard guard(fMutex);
        fRecords.push_back(record);
      }) {
}

std::vector<zu::log::Record> LogCapture::records() const {
  const std::lock_guard guard(fMutex);
  return fRecords;
}

std::vector<std::string> LogCapture::lines(const std::string& category) const {
  std::vector<std::string> result;
  for (const auto& record : records())
    if (record.category == category)
      result.push_back(std::string(zu::log::name(record.level)) + " " + record.function + ": " +
                       record.text);
  return result;
}

void LogCapture::clear() {
  const std::lock_guard guard(fMutex);
  fRecords.clear();
}
