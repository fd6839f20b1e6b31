// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_greeting.h"

#include <sys/socket.h>

#include <QRegularExpression>
#include <array>

namespace {

constexpr std::size_t kLongest = 16384;

// From now on the socket is readable only when more than this has come, or the end.
void waitForMoreThan(int socket, int bytes) {
  const int mark = bytes + 1;
  setsockopt(socket, SOL_SOCKET, SO_RCVLOWAT, &mark, sizeof mark);
}

}  // namespace

FtpGreeting::FtpGreeting(int socket, std::chrono::milliseconds limit)
    : fSocket(socket), fNotifier(socket, QSocketNotifier::Read) {
  connect(&fNotifier, &QSocketNotifier::activated, this, &FtpGreeting::look);
  connect(&fLimit, &QTimer::timeout, this,
          [this] { end(tr("Something answers there, but not as an FTP server does.")); });
  fLimit.start(limit);
}

void FtpGreeting::look() {
  std::array<char, kLongest> buffer{};
  const ssize_t size = recv(fSocket, buffer.data(), buffer.size(), MSG_PEEK | MSG_DONTWAIT);
  const QByteArray text(buffer.data(), size > 0 ? static_cast<qsizetype>(size) : 0);

  // A code and, in the last line of several, a blank.
  static const QRegularExpression kLastLine("^(\\d{3}) .*\\n", QRegularExpression::MultilineOption);
  const auto match = kLastLine.match(QString::fromUtf8(text));
  if (match.hasMatch()) {
    const bool welcome = match.captured(1) == "220" || match.captured(1) == "230";
    return end(welcome ? QString() : tr("The server answered: %1").arg(match.captured().trimmed()));
  }
  const bool isGreeting = text.isEmpty() || (text[0] >= '0' && text[0] <= '9');
  int mark = 0;
  socklen_t markSize = sizeof mark;
  getsockopt(fSocket, SOL_SOCKET, SO_RCVLOWAT, &mark, &markSize);
  if (size < mark) return end(tr("The server closed the connection without a greeting."));
  if (!isGreeting || text.size() >= static_cast<qsizetype>(kLongest))
    return end(tr("Something answers there, but not as an FTP server does."));
  waitForMoreThan(fSocket, static_cast<int>(size));
}

void FtpGreeting::end(const QString& error) {
  fNotifier.setEnabled(false);
  fLimit.stop();
  waitForMoreThan(fSocket, 0);
  emit heard(error);
}
