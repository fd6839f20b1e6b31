// SPDX-License-Identifier: Apache-2.0
// The robot's home: the only place to which programs may have something written.
#pragma once

#include <filesystem>
#include <string>

#include "zu/unique_fd.h"

namespace robot {

// What programs call the home, wherever it is on this computer.
inline const std::string kHomeName = "/home/tam/";
inline const std::string kCameraFolder = kHomeName + "recordings/cameras/";

// A file that was not there before, still empty.
struct NewFile {
  zu::os::UniqueFd folder;
  zu::os::UniqueFd file;  // open for writing
  std::string name;       // in its folder
  std::string path;       // as programs know it: "/home/tam/recordings/cameras/clip.avi"

  // Takes it away again.
  void discard() const;
};

// Thread-safe.
class HomeFolder {
 public:
  // `home` need not exist before create() does.
  explicit HomeFolder(std::filesystem::path home) : fHome(std::move(home)) {}

  // Makes `name` + `extension` in `folder`, which is made when missing; where there is such a file
  // already, `name`_2, `name`_3, ... `folder` begins with "/home/tam/". Links are followed while
  // they stay in the home.
  //
  // Throws KyError that says what to do: the folder lies or leads outside of the home or contains
  // "..", a name is empty, too long (folders 255 bytes, files 200) or has a slash or control
  // characters, the disk doesn't take it.
  NewFile create(const std::string& folder, const std::string& name,
                 const std::string& extension) const;

 private:
  std::filesystem::path fHome;
};

}  // namespace robot
