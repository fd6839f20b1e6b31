// SPDX-License-Identifier: Apache-2.0
// What all downloads of this process share.
#pragma once

#include <QString>

namespace Dk {

// GUI thread only.
struct FtpConfig {
  // Empty until the user has typed them, and again once a server has refused them. Kept in memory
  // only.
  static QString a_login;
  static QString a_password;
  // Not used by downloads.
  static QString a_defaultUploadSubfolder;
  static const int a_defaultPort;  // 21
};

}  // namespace Dk
