// SPDX-License-Identifier: Apache-2.0
// Where pictures and films are written to.
#pragma once

#include <string>
#include <vector>

namespace cli {

// The ending of a file's name in lower case, with its point.
std::string endingOf(const std::string& path);
// Throws WrongUse that names the endings unless the file has one of them.
void requireEnding(const std::string& path, const std::vector<std::string>& endings);
// Throws KyError when the file can't be there: before the robot has been asked for anything.
void requireWritable(const std::string& path);
// All or nothing: what was there stays until the new file is whole. Throws KyError.
void writeWhole(const std::string& path, const void* bytes, std::size_t size);

}  // namespace cli
