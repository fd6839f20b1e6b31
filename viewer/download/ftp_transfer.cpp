// How the client's commands run on libcurl, and what becomes of them.
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QPointer>
#include <algorithm>
#include <utility>

#include "viewer/download/ftp_client.h"
#include "viewer/download/ftp_greeting.h"

namespace {

// Of one file, whatever characters its name has.
bool fillUrl(CURLU* url, const char* scheme, const QByteArray& host, quint16 port,
             const QString& path) {
  const QByteArray name = host.contains(':') ? '[' + host + ']' : host;
  const QByteArray number = QByteArray::number(port);
  const QByteArray file = '/' + path.toUtf8();
  return curl_url_set(url, CURLUPART_SCHEME, scheme, 0) == CURLUE_OK &&
         curl_url_set(url, CURLUPART_HOST, name.constData(), 0) == CURLUE_OK &&
         curl_url_set(url, CURLUPART_PORT, number.constData(), 0) == CURLUE_OK &&
         curl_url_set(url, CURLUPART_PATH, file.constData(), CURLU_URLENCODE) == CURLUE_OK;
}

}  // namespace

bool FtpClient::newTransfer(const char* scheme, const QString& path) {
  fUrl.reset(curl_url());
  if (!fillUrl(fUrl.get(), scheme, fHost, fPort, path)) return false;
  fTransfer.reset(curl_easy_init());
  CURL* transfer = fTransfer.get();
  curl_easy_setopt(transfer, CURLOPT_CURLU, fUrl.get());
  curl_easy_setopt(transfer, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(transfer, CURLOPT_FTP_FILEMETHOD, CURLFTPMETHOD_NOCWD);
  curl_easy_setopt(transfer, CURLOPT_USERNAME, fUser.constData());
  curl_easy_setopt(transfer, CURLOPT_PASSWORD, fPassword.constData());
  curl_easy_setopt(transfer, CURLOPT_PROXY, "");  // robots are near, whatever the environment says
  curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(transfer, CURLOPT_QUICK_EXIT, 1L);  // never waits for a name that is looked up
  const auto silence = static_cast<long>(fSilenceLimit.count());
  curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT, silence);
  curl_easy_setopt(transfer, CURLOPT_SERVER_RESPONSE_TIMEOUT, silence);
  curl_easy_setopt(transfer, CURLOPT_HEADERFUNCTION, &FtpClient::onReply);
  curl_easy_setopt(transfer, CURLOPT_HEADERDATA, this);
  return true;
}

void FtpClient::onEnded(int curlCode) {
  const auto code = static_cast<CURLcode>(curlCode);
  const QString error = code == CURLE_OK ? QString() : errorOf(code);
  switch (currentCommand()) {
    case ConnectToHost:
      if (code == CURLE_OK) return onConnected();
      break;
    case Login:
      if (code != CURLE_OK) dropConnection();
      if (code == CURLE_OK) fConnection = Connection::LoggedIn;
      break;
    default:
      fProgressTimer.stop();
      if (code == CURLE_OK && !emitProgress()) return;
      break;
  }
  dropTransfer();
  finish(error);
}

void FtpClient::dropTransfer() {
  if (fTransfer) fLoop->stop(fTransfer.get());
  fTransfer.reset();
}

// libcurl can't log in over a connection that it has only opened; it is handed it again then.
void FtpClient::onConnected() {
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(fTransfer.get(), CURLINFO_ACTIVESOCKET, &socket);
  fSocket = fcntl(socket, F_DUPFD_CLOEXEC, 0);
  dropTransfer();
  auto* greeting = new FtpGreeting(fSocket, fConnectLimit, this);
  connect(greeting, &FtpGreeting::heard, this, [this, greeting](const QString& error) {
    greeting->deleteLater();
    greeting->setParent(nullptr);
    if (error.isEmpty()) {
      fConnection = Connection::Open;
    } else {
      dropConnection();
    }
    finish(error);
  });
}

// Not by a farewell, for whose answer libcurl would wait.
void FtpClient::dropConnection() {
  fConnection = Connection::None;
  if (fSocket < 0) return;
  ::shutdown(fSocket, SHUT_RDWR);
  ::close(std::exchange(fSocket, -1));
}

bool FtpClient::emitProgress() {
  if (fReadBytes == fToldBytes) return true;
  fToldBytes = fReadBytes;
  const int id = fQueue.front().id;
  const QPointer<FtpClient> self(this);
  emit dataTransferProgress(fReadBytes, fTotalBytes);
  return self && !fQueue.empty() && fQueue.front().id == id;
}

// libcurl would notice a silent server only after its mean speed of some seconds has gone down. And
// periods are counted, not time: while we wait for our own disk nobody else is silent.
void FtpClient::watchTransfer() {
  if (++fSilentPeriods * kPeriod < fSilenceLimit) {
    emitProgress();
    return;
  }
  fProgressTimer.stop();
  dropTransfer();
  finish(silenceText());
}

QString FtpClient::silenceText() const {
  return tr("The server has been silent for %1 s.").arg(fSilenceLimit.count());
}

QString FtpClient::errorOf(CURLcode code) const {
  const QString server = QString::fromUtf8(fHost);
  long number = 0;
  curl_easy_getinfo(fTransfer.get(), CURLINFO_OS_ERRNO, &number);
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return tr("There is no computer called '%1'.").arg(server);
    case CURLE_COULDNT_CONNECT:
      return tr("%1, port %2: %3.")
          .arg(server, QString::number(fPort), qt_error_string(static_cast<int>(number)));
    case CURLE_OPERATION_TIMEDOUT:
      return currentCommand() == ConnectToHost ? tr("%1 does not answer.").arg(server)
                                               : silenceText();
    case CURLE_REMOTE_FILE_NOT_FOUND:
      return tr("The file is not there, or may not be read. The server answered: %1")
          .arg(QString::fromUtf8(fReply));
    case CURLE_ABORTED_BY_CALLBACK:
      return tr("The server did not say that the file is complete.");
    case CURLE_WRITE_ERROR:
      return tr("The file can't be written: %1.").arg(fDevice->errorString());
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
      return tr("The connection to the server was lost.");
    default:
      return fReply.startsWith('4') || fReply.startsWith('5')
                 ? tr("The server answered: %1").arg(QString::fromUtf8(fReply))
                 : QString::fromUtf8(curl_easy_strerror(code)) + ".";
  }
}

curl_socket_t FtpClient::giveSocket(void* self, curlsocktype /*purpose*/, curl_sockaddr* address) {
  int& ours = static_cast<FtpClient*>(self)->fSocket;
  if (ours < 0) ours = socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  return fcntl(ours, F_DUPFD_CLOEXEC, 0);
}

int FtpClient::keepConnected(void* /*self*/, curl_socket_t socket, curlsocktype /*purpose*/) {
  sockaddr_storage peer{};
  socklen_t size = sizeof peer;
  const bool isConnected = getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
  return isConnected ? CURL_SOCKOPT_ALREADY_CONNECTED : CURL_SOCKOPT_OK;
}

std::size_t FtpClient::onData(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& client = *static_cast<FtpClient*>(self);
  client.fSilentPeriods = 0;
  client.fLastByte = std::chrono::steady_clock::now();
  const auto wanted = static_cast<qint64>(size) * static_cast<qint64>(count);
  qint64 written = 0;
  // A device that takes only a part says why with the rest.
  for (qint64 part = 1; part > 0 && written < wanted; written += part)
    part = std::max(client.fDevice->write(bytes + written, wanted - written), qint64{0});
  return static_cast<std::size_t>(written);
}

std::size_t FtpClient::onReply(char* bytes, std::size_t size, std::size_t count, void* self) {
  const QByteArray line(bytes, static_cast<qsizetype>(size * count));
  static_cast<FtpClient*>(self)->fReply = line.trimmed();
  return size * count;
}

int FtpClient::onProgress(void* self, curl_off_t total, curl_off_t done, curl_off_t /*toSend*/,
                          curl_off_t /*sent*/) {
  auto& client = *static_cast<FtpClient*>(self);
  client.fReadBytes = done;
  client.fTotalBytes = total;
  // The one answer for which libcurl holds up the event loop.
  const bool isWhole = total > 0 && done >= total;
  return isWhole && std::chrono::steady_clock::now() - client.fLastByte > kFarewellLimit ? 1 : 0;
}
