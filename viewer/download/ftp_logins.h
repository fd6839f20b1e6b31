// SPDX-License-Identifier: Apache-2.0
// The logins of the robots of this process, so that the user is asked once a robot.
#pragma once

#include <QString>

namespace Dk {

struct FtpLogin {
  QString user;
  QString password;

  bool isComplete() const { return !user.isEmpty() && !password.isEmpty(); }
  bool operator==(const FtpLogin&) const = default;
};

// In memory only. All are for the GUI thread.
//
// What the robot took last, or else what FtpConfig has; incomplete where neither knows one.
FtpLogin ftpLoginOf(const QString& host);
// The robot took it. FtpConfig has it from now on, too.
void keepFtpLogin(const QString& host, const FtpLogin& login);
// The robot refused it: nobody gets this login for it again.
void dropFtpLogin(const QString& host, const FtpLogin& login);

}  // namespace Dk
