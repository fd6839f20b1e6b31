// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_logins.h"

#include <map>

#include "viewer/download/ftp_config.h"

namespace Dk {
namespace {

std::map<QString, FtpLogin>& logins() {
  static std::map<QString, FtpLogin> kept;
  return kept;
}

}  // namespace

FtpLogin ftpLoginOf(const QString& host) {
  const auto found = logins().find(host);
  return found != logins().end() ? found->second
                                 : FtpLogin{FtpConfig::a_login, FtpConfig::a_password};
}

void keepFtpLogin(const QString& host, const FtpLogin& login) {
  logins()[host] = login;
  FtpConfig::a_login = login.user;
  FtpConfig::a_password = login.password;
}

void dropFtpLogin(const QString& host, const FtpLogin& login) {
  const auto found = logins().find(host);
  if (found != logins().end() && found->second == login) logins().erase(found);
  if (FtpLogin{FtpConfig::a_login, FtpConfig::a_password} != login) return;
  FtpConfig::a_login.clear();
  FtpConfig::a_password.clear();
}

}  // namespace Dk
