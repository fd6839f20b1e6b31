// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_folder.h"

#include <iterator>

#include "zu/log.h"

namespace robot {
namespace fs = std::filesystem;

PictureFolder::PictureFolder(fs::path folder, std::string who)
    : fFolder(std::move(folder)), fWho(std::move(who)) {
}

void PictureFolder::rescan() {
  Files files = filesOfFolder();
  if (files.size() > kMostPictures) {
    warn("\"" + fFolder.string() + "\" holds " + std::to_string(files.size()) +
         " files; only the first " + std::to_string(kMostPictures) + " by name are loaded");
    files.erase(std::next(files.begin(), kMostPictures), files.end());
  }
  for (auto& [path, file] : files)
    if (const auto known = fFiles.find(path);
        known != fFiles.end() && known->second.picture && known->second.isSameAs(file))
      file = known->second;
  fFiles = std::move(files);
}

void PictureFolder::loadSome(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  for (auto& [path, file] : fFiles) {
    if (!file.waits) continue;
    load(path, file);
    if (std::chrono::steady_clock::now() >= end) return;
  }
}

std::vector<std::shared_ptr<const TaughtPicture>> PictureFolder::pictures() const {
  std::vector<std::shared_ptr<const TaughtPicture>> pictures;
  for (const auto& [path, file] : fFiles)
    if (file.picture) pictures.push_back(file.picture);
  return pictures;
}

PictureFolder::Files PictureFolder::filesOfFolder() const {
  Files files;
  std::error_code error;
  for (fs::directory_iterator entry(fFolder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (!entry->is_regular_file(ignored) || entry->path().filename().string().front() == '.')
      continue;
    files[entry->path()] = {entry->last_write_time(ignored), entry->file_size(ignored), true, {}};
  }
  if (error) warn("\"" + fFolder.string() + "\" can't be read: " + error.message());
  return files;
}

void PictureFolder::load(const fs::path& path, File& file) const {
  file.waits = false;
  try {
    file.picture = std::make_shared<TaughtPicture>(readTaughtPicture(path));
  } catch (const std::exception& error) {
    warn(std::string(error.what()) + "; left out");
  }
}

void PictureFolder::warn(const std::string& text) const {
  zu::log::warning("kyrobot", fWho) << text;
}

}  // namespace robot
