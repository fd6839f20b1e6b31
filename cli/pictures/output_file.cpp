// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/output_file.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "cli/commands.h"
#include "cli/ky_command.h"
#include "ky/error.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, const std::string& why) {
  throw Ky::KyError(kBrokerName, "", "can't write '" + path + "': " + why);
}

fs::path folderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder;
}

}  // namespace

std::string endingOf(const std::string& path) {
  std::string ending = fs::path(path).extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return ending;
}

void requireEnding(const std::string& path, const std::vector<std::string>& endings) {
  const std::string ending = endingOf(path);
  std::string known;
  for (const std::string& each : endings) {
    if (each == ending) return;
    known += (known.empty() ? "" : " or ") + each;
  }
  throw WrongUse("'" + path + "' has another ending than " + known +
                 ", which says what to write into it");
}

void requireWritable(const std::string& path) {
  std::error_code ignored;
  const fs::path folder = folderOf(path);
  if (!fs::is_directory(folder, ignored)) fail(path, "there is no folder " + folder.string());
  if (fs::is_directory(path, ignored)) fail(path, "it is a folder");
  const fs::path tried = fs::exists(path, ignored) ? fs::path(path) : folder;
  if (access(tried.c_str(), W_OK) != 0) fail(path, std::strerror(errno));
}

void writeWhole(const std::string& path, const void* bytes, std::size_t size) {
  const std::string part = path + ".part";
  errno = 0;
  std::ofstream file(part, std::ios::binary);
  file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  file.close();
  if (file && std::rename(part.c_str(), path.c_str()) == 0) return;
  const std::string why = errno != 0 ? std::strerror(errno) : "perhaps the disk is full";
  std::error_code ignored;
  fs::remove(part, ignored);
  fail(path, why);
}

}  // namespace cli
