// SPDX-License-Identifier: Apache-2.0
// Where Debian's FTP server is.
#pragma once

#include <string>

namespace robot {

// The path of "pure-ftpd" or "pure-pw", from $PATH or from where Debian puts servers, which a
// normal user's $PATH leaves out. Throws KyError that says how to install it.
std::string ftpProgram(const std::string& name);

}  // namespace robot
