// SPDX-License-Identifier: Apache-2.0
// The robot's FTP server, as its command line wants it.
#pragma once

#include <iosfwd>
#include <memory>

#include "robot/ftp/ftp_server.h"
#include "robot/options.h"

namespace robot {

// Starts it where it is wanted, and says on `out` how to log in: a password that the person has
// given is not shown. A robot can do without: where the server can't be had the log says why and
// what to do, and null is returned. Throws KyError when the password file can't be used.
std::unique_ptr<FtpServer> startFtp(const Options& options, std::ostream& out);

}  // namespace robot
