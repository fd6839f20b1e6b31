// SPDX-License-Identifier: Apache-2.0
// One connection's FTP server process.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace robot {

class FtpConfinement;

// Starts `command` for the client at the other end of `socket`, which the caller closes. It dies
// with the thread that calls this, and inherits nothing but the socket. The process to wait for, or
// -1 when the system has no room for it.
pid_t startFtpSession(const std::vector<std::string>& command, const FtpConfinement& confinement,
                      int socket);

}  // namespace robot
