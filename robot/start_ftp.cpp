// SPDX-License-Identifier: Apache-2.0
#include "robot/start_ftp.h"

#include <ostream>

#include "ky/error.h"
#include "robot/ftp/ftp_login.h"
#include "zu/log.h"

namespace robot {

std::unique_ptr<FtpServer> startFtp(const Options& options, std::ostream& out) {
  if (!options.ftp) return nullptr;
  const FtpLogin login = ftpLogin(options.ftp->passwordFile);
  try {
    auto server = std::make_unique<FtpServer>(FtpServerOptions{
        {options.listen.host, options.ftp->port}, options.ftp->user, login.password, options.home});
    out << "kyrobot: FTP on " << server->address().toString() << ", user " << options.ftp->user
        << ", password " << (login.isGenerated ? login.password : "as given") << std::endl;
    if (!options.listen.isLoopback())
      zu::log::warning("kyrobot", "ftp")
          << "FTP encrypts nothing, not even the password: use it in networks that you trust";
    return server;
  } catch (const Ky::KyError& error) {
    zu::log::error("kyrobot", "ftp")
        << error.what() << " Until then recordings can't be downloaded; they are in "
        << options.home.string();
    return nullptr;
  }
}

}  // namespace robot
