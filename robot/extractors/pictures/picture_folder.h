// SPDX-License-Identifier: Apache-2.0
// The folder of pictures that the robot was taught.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "robot/extractors/pictures/taught_picture.h"

namespace robot {

// Thread-bound. Loads bit by bit, so that nobody waits for a large folder. What can't be loaded is
// left out with a warning that names it.
class PictureFolder {
 public:
  static constexpr std::size_t kMostPictures = 64;

  // `who`: the module in whose name warnings are logged.
  PictureFolder(std::filesystem::path folder, std::string who);

  // Looks what is in the folder now. Pictures that are no longer there are forgotten, those that
  // have not changed are kept, the others wait to be loaded.
  void rescan();
  // Loads waiting pictures until `time` is over, but one at least when one waits.
  void loadSome(std::chrono::milliseconds time);

  // By file name.
  std::vector<std::shared_ptr<const TaughtPicture>> pictures() const;

 private:
  struct File {
    std::filesystem::file_time_type changed;
    std::uintmax_t bytes = 0;
    bool waits = true;
    std::shared_ptr<const TaughtPicture> picture;  // null: it waits, or can't be loaded

    bool isSameAs(const File& other) const {
      return changed == other.changed && bytes == other.bytes;
    }
  };
  using Files = std::map<std::filesystem::path, File>;

  Files filesOfFolder() const;
  void load(const std::filesystem::path& path, File& file) const;
  void warn(const std::string& text) const;

  const std::filesystem::path fFolder;
  const std::string fWho;
  Files fFiles;
};

}  // namespace robot
