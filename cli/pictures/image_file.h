// SPDX-License-Identifier: Apache-2.0
// One picture as a file that every program can show.
#pragma once

#include <string>

#include "cli/pictures/picture.h"

namespace cli {

// Throws WrongUse for a name that ends in none of ".png", ".jpg" and ".jpeg".
void requireImageName(const std::string& path);
// As its name's ending says. Throws KyError, and leaves nothing behind then.
void writeImage(const std::string& path, const Picture& picture);

}  // namespace cli
