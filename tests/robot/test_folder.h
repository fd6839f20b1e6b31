// SPDX-License-Identifier: Apache-2.0
// A folder of a test's own, gone after it.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

class TestFolder {
 public:
  TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "robot-test-XXXXXX").string();
    fPath = mkdtemp(name.data());
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& path() const { return fPath; }
  std::string operator/(const std::string& file) const { return (fPath / file).string(); }

 private:
  std::filesystem::path fPath;
};
