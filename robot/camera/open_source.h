// SPDX-License-Identifier: Apache-2.0
// Makes the source that a person has named.
#pragma once

#include <memory>
#include <string>

#include "robot/camera/source.h"

namespace robot {

// `text` is "generated", "generated:SECONDS", the path of a film, a picture or a folder of
// pictures, or "/dev/videoN". The source is open. Throws KyError.
std::unique_ptr<CameraSource> openSource(const std::string& text, int camera);

}  // namespace robot
