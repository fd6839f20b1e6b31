// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/home_folder.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <vector>

#include "ky/error.h"

namespace robot {

using zu::os::UniqueFd;

namespace {

using Ky::KyError;

constexpr std::size_t kMaxFolderPart = 255;  // bytes, as file systems have it
constexpr std::size_t kMaxPath = 2048;
constexpr std::size_t kMaxName = 200;  // leaves room for a number and the extension

bool hasControlCharacters(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

void checkName(const std::string& name) {
  if (name.empty()) throw KyError("a file needs a name");
  if (name.size() > kMaxName)
    throw KyError("a file's name may have " + std::to_string(kMaxName) + " bytes, not " +
                  std::to_string(name.size()));
  if (hasControlCharacters(name))
    throw KyError("a file's name can't hold line breaks and other control characters");
  if (name.find('/') != std::string::npos)
    throw KyError("\"" + name + "\" is no file name: it has a slash; the folder is told apart");
}

// The parts below the home.
std::vector<std::string> partsOf(const std::string& folder) {
  if (hasControlCharacters(folder))
    throw KyError("a folder's name can't hold line breaks and other control characters");
  if (folder.size() > kMaxPath)
    throw KyError("the folder's name is too long: it may have " + std::to_string(kMaxPath) +
                  " bytes");
  if (!(folder + "/").starts_with(kHomeName))
    throw KyError("\"" + folder + "\" is not in the robot's home; it must begin with \"" +
                  kHomeName + "\"");
  std::istringstream rest((folder + "/").substr(kHomeName.size()));
  std::vector<std::string> parts;
  for (std::string part; std::getline(rest, part, '/');) {
    if (part == "..") throw KyError("\"" + folder + "\" contains \"..\"; name the folder itself");
    if (part.size() > kMaxFolderPart)
      throw KyError("\"" + part + "\" is too long: a folder's name may have " +
                    std::to_string(kMaxFolderPart) + " bytes");
    if (!part.empty() && part != ".") parts.push_back(part);
  }
  return parts;
}

std::string reasonOf(int error) {
  switch (error) {
    case EXDEV:
    case ELOOP:
      return "it leads out of the robot's home";
    case ENOTDIR:
    case EEXIST:
      return "a file is in the way";
    case ENOSPC:
    case EDQUOT:
      return "the robot's disk is full; free some room";
    default:
      return std::strerror(error);
  }
}

[[noreturn]] void fail(const std::string& path, int error) {
  throw KyError("\"" + path + "\" can't be made: " + reasonOf(error));
}

// Fails with EXDEV where a link leads out.
UniqueFd openBeneath(int home, const std::string& path) {
  open_how how{};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
  return UniqueFd(static_cast<int>(syscall(SYS_openat2, home, path.c_str(), &how, sizeof how)));
}

UniqueFd openOrMake(int home, const UniqueFd& parent, const std::string& path,
                    const std::string& part) {
  UniqueFd folder = openBeneath(home, path);
  if (folder.get() >= 0 || errno != ENOENT) return folder;
  if (mkdirat(parent.get(), part.c_str(), 0777) != 0) return UniqueFd();
  return openBeneath(home, path);
}

UniqueFd openFolder(const std::filesystem::path& home, const std::vector<std::string>& parts) {
  const UniqueFd top(open(home.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  UniqueFd folder(open(home.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() < 0) fail(kHomeName, errno);
  std::string path;
  for (const std::string& part : parts) {
    path += part + "/";
    folder = openOrMake(top.get(), folder, path, part);
    if (folder.get() < 0) fail(kHomeName + path, errno);
  }
  return folder;
}

std::string joined(const std::vector<std::string>& parts) {
  std::string path = kHomeName;
  for (const std::string& part : parts) path += part + "/";
  return path;
}

std::string numbered(const std::string& name, int number) {
  return number == 1 ? name : name + "_" + std::to_string(number);
}

}  // namespace

void NewFile::discard() const {
  unlinkat(folder.get(), name.c_str(), 0);
}

NewFile HomeFolder::create(const std::string& folder, const std::string& name,
                           const std::string& extension) const {
  checkName(name);
  const auto parts = partsOf(folder);
  NewFile made{openFolder(fHome, parts), UniqueFd(), "", ""};
  for (int number = 1; made.file.get() < 0; ++number) {
    made.name = numbered(name, number) + extension;
    made.path = joined(parts) + made.name;
    made.file = UniqueFd(
        openat(made.folder.get(), made.name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (made.file.get() < 0 && errno != EEXIST) fail(made.path, errno);
  }
  return made;
}

}  // namespace robot
