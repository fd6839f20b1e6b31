// SPDX-License-Identifier: Apache-2.0
#include "ky/keys.h"

#include <fcntl.h>
#include <unistd.h>
#include <zmq.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iomanip>

#include "ky/error.h"

namespace Ky {
namespace {

constexpr std::size_t kKeyText = 40;
constexpr const char* kOwnSecret = "own.secret";
constexpr const char* kOwnPublic = "own.public";
constexpr const char* kKnown = "known";
constexpr const char* kPublic = ".public";
constexpr const char* kHowToMake = "make keys with 'ky keys make'";
constexpr const char* kHowToTrust = "write it with 'ky keys trust'";

void writeNew(const std::filesystem::path& file, const std::string& text, mode_t mode) {
  const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (fd < 0) throw KyError("can't make " + file.string() + ": " + std::strerror(errno));
  const std::string line = text + "\n";
  const bool written = ::write(fd, line.data(), line.size()) == static_cast<ssize_t>(line.size());
  const int problem = errno;
  if (::close(fd) != 0 || !written)
    throw KyError("can't write " + file.string() + ": " + std::strerror(problem));
}

// A longer word than a key is not read to its end.
std::string readKey(const std::filesystem::path& file, const std::string& advice) {
  std::error_code problem;
  std::ifstream stream;
  // Nothing that it would be waited for.
  if (std::filesystem::is_regular_file(file, problem)) stream.open(file);
  std::string key;
  if (!stream.is_open() || !(stream >> std::setw(kKeyText + 1) >> key))
    throw KyError("can't read the key in " + file.string() + ": " + advice);
  try {
    requireKey(key);
  } catch (const KyError& error) {
    throw KyError(file.string() + ": " + error.what());
  }
  return key;
}

void requireName(const std::string& name) {
  const bool isName =
      !name.empty() && name[0] != '.' && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) || std::strchr("._:-[]", c) != nullptr;
      });
  if (!isName)
    throw KyError("'" + name + "' is no name for a key: use letters, digits and . _ : - only");
}

}  // namespace

void requireKey(const std::string& text) {
  std::array<std::uint8_t, 32> bytes{};
  if (text.size() != kKeyText || zmq_z85_decode(bytes.data(), text.c_str()) == nullptr)
    throw KyError("'" + text + "' is no key: a key is 40 characters of Z85 text");
}

KyKeyPair KyKeyPair::generate() {
  std::array<char, kKeyText + 1> publicKey{};
  std::array<char, kKeyText + 1> secretKey{};
  do {
    if (zmq_curve_keypair(publicKey.data(), secretKey.data()) != 0)
      throw KyError("can't make keys: this machine's ZeroMQ has no encryption");
    // 'ky keys trust NAME KEY' would take it for an option.
  } while (publicKey[0] == '-');
  return {publicKey.data(), secretKey.data()};
}

KyKeyStore::KyKeyStore(std::filesystem::path folder) : fFolder(std::move(folder)) {
}

std::filesystem::path KyKeyStore::defaultFolder() {
  if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config != '\0')
    return std::filesystem::path(config) / "ky" / "keys";
  const char* home = std::getenv("HOME");
  return std::filesystem::path(home != nullptr ? home : "/") / ".config" / "ky" / "keys";
}

std::filesystem::path KyKeyStore::knownFolder() const {
  return fFolder / kKnown;
}

bool KyKeyStore::exists() const {
  return std::filesystem::exists(fFolder / kOwnSecret);
}

KyKeyPair KyKeyStore::create() {
  std::error_code problem;
  std::filesystem::create_directories(fFolder / kKnown, problem);
  if (problem) throw KyError("can't make " + fFolder.string() + ": " + problem.message());
  const KyKeyPair pair = KyKeyPair::generate();
  writeNew(fFolder / kOwnSecret, pair.secretKey, 0600);
  writeNew(fFolder / kOwnPublic, pair.publicKey, 0644);
  return pair;
}

KyKeyPair KyKeyStore::own() const {
  return {readKey(fFolder / kOwnPublic, kHowToMake), readKey(fFolder / kOwnSecret, kHowToMake)};
}

void KyKeyStore::add(const std::string& name, const std::string& publicKey) {
  requireName(name);
  requireKey(publicKey);
  std::error_code problem;
  std::filesystem::create_directories(fFolder / kKnown, problem);
  const auto file = fFolder / kKnown / (name + kPublic);
  const auto fresh = fFolder / kKnown / (name + ".new");
  std::ofstream stream(fresh, std::ios::trunc);
  stream << publicKey << '\n';
  if (!stream.flush()) throw KyError("can't write " + fresh.string() + ": " + std::strerror(errno));
  std::filesystem::rename(fresh, file, problem);
  if (problem) throw KyError("can't write " + file.string() + ": " + problem.message());
}

std::string KyKeyStore::known(const std::string& name) const {
  requireName(name);
  const auto file = fFolder / kKnown / (name + kPublic);
  return std::filesystem::exists(file) ? readKey(file, kHowToTrust) : "";
}

std::vector<std::string> KyKeyStore::knownKeys() const {
  std::vector<std::string> problems;
  std::vector<std::string> keys = knownKeys(problems);
  if (!problems.empty()) throw KyError(problems.front());
  return keys;
}

std::vector<std::string> KyKeyStore::knownKeys(std::vector<std::string>& problems) const {
  std::vector<std::string> keys;
  std::error_code problem;
  std::filesystem::directory_iterator entry(knownFolder(), problem);
  for (; !problem && entry != std::filesystem::directory_iterator(); entry.increment(problem)) try {
      if (entry->path().extension() == kPublic) keys.push_back(readKey(entry->path(), kHowToTrust));
    } catch (const KyError& error) {
      problems.emplace_back(error.what());
    }
  if (problem && problem != std::errc::no_such_file_or_directory)
    throw KyError("can't read " + knownFolder().string() + ": " + problem.message());
  return keys;
}

}  // namespace Ky
