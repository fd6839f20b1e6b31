// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_config.h"

namespace Dk {

QString FtpConfig::a_login;
QString FtpConfig::a_password;
QString FtpConfig::a_defaultUploadSubfolder;
const int FtpConfig::a_defaultPort = 21;

}  // namespace Dk
