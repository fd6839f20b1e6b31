// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_connection.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "viewer/download/ftp_greeting.h"
#include "viewer/download/ftp_receiver.h"

namespace {

long inSeconds(std::chrono::milliseconds limit) {
  return static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(limit).count());
}

// Of a listing, which is far longer than that of any folder of recordings.
constexpr qint64 kLongestListing = 4 << 20;

// Such a character would end one line of the protocol and begin another.
bool hasControlCharacters(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return c.unicode() < ' ' || c.unicode() == 0x7F; });
}

bool hasEnded(int socket) {
  pollfd state{socket, POLLRDHUP, 0};
  return poll(&state, 1, 0) != 0;
}

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

std::size_t onReply(char* bytes, std::size_t size, std::size_t count, void* reply) {
  const QByteArray line(bytes, static_cast<qsizetype>(size * count));
  *static_cast<QByteArray*>(reply) = line.trimmed();
  return size * count;
}

// The number of an answer that says no, or else 0.
int refusalIn(const QByteArray& reply) {
  const int number = reply.left(3).toInt();
  return number >= 400 && number < 600 ? number : 0;
}

curl_socket_t giveSocket(void* known, curlsocktype /*purpose*/, curl_sockaddr* address) {
  int& ours = *static_cast<int*>(known);
  if (ours < 0) ours = socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  return fcntl(ours, F_DUPFD_CLOEXEC, 0);
}

int keepConnected(void* /*known*/, curl_socket_t socket, curlsocktype /*purpose*/) {
  sockaddr_storage peer{};
  socklen_t size = sizeof peer;
  const bool isConnected = getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &size) == 0;
  return isConnected ? CURL_SOCKOPT_ALREADY_CONNECTED : CURL_SOCKOPT_OK;
}

}  // namespace

FtpConnection::FtpConnection() : fLoop(this) {
  connect(&fLoop, &CurlLoop::ended, this, &FtpConnection::onEnded);
}

FtpConnection::~FtpConnection() {
  close();
}

void FtpConnection::open(const QString& host, quint16 port, std::chrono::milliseconds limit) {
  dropConnection();
  fHost = host.toUtf8();
  fPort = port;
  // Of HTTP libcurl opens the connection alone, and says nothing.
  if (!newTransfer("http", {}, limit))
    return finish(tr("'%1' is no name of a computer.").arg(host));
  curl_easy_setopt(fTransfer.get(), CURLOPT_CONNECT_ONLY, 1L);
  fLoop.start(fTransfer.get());
}

void FtpConnection::logIn(const QString& user, const QString& password,
                          std::chrono::seconds limit) {
  if (hasControlCharacters(user) || hasControlCharacters(password))
    return finish(tr("A user name or password can't contain line breaks."));
  fUser = user.toUtf8();
  fPassword = password.toUtf8();
  if (fState == State::Closed) return finish(tr("There is no connection to a server."));
  fState = State::Open;
  // A server that has waited too long for the user hangs up; libcurl calls it again.
  if (hasEnded(fSocket)) ::close(std::exchange(fSocket, -1));
  newTransfer("ftp", {}, limit);
  CURL* transfer = fTransfer.get();
  curl_easy_setopt(transfer, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(transfer, CURLOPT_FRESH_CONNECT, 1L);  // none of an earlier login
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETFUNCTION, &giveSocket);
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETDATA, &fSocket);
  curl_easy_setopt(transfer, CURLOPT_SOCKOPTFUNCTION, &keepConnected);
  fLoop.start(transfer);
}

void FtpConnection::get(const QString& file, QIODevice* to, std::chrono::seconds silence,
                        qint64 atMost) {
  if (fState != State::LoggedIn) return finish(tr("Nobody is logged in."));
  // What ends so would be listed, not fetched.
  if (file.isEmpty() || file.endsWith('/')) return finish(tr("'%1' is no file.").arg(file));
  if (hasControlCharacters(file))
    return finish(tr("A file whose name contains line breaks can't be downloaded."));
  newTransfer("ftp", file, silence);
  receive(to, silence, atMost);
}

void FtpConnection::list(const QString& folder, std::chrono::seconds silence) {
  fEntries.clear();
  if (fState != State::LoggedIn) return finish(tr("Nobody is logged in."));
  if (hasControlCharacters(folder))
    return finish(tr("A folder whose name contains line breaks can't be listed."));
  newTransfer("ftp", folder.isEmpty() || folder.endsWith('/') ? folder : folder + '/', silence);
  curl_easy_setopt(fTransfer.get(), CURLOPT_CUSTOMREQUEST, "MLSD");
  fListing.setData({});
  fListing.open(QIODevice::WriteOnly);
  receive(&fListing, silence, kLongestListing);
}

void FtpConnection::receive(QIODevice* to, std::chrono::seconds silence, qint64 atMost) {
  fReceiver = std::make_unique<FtpReceiver>(fLoop, fTransfer.get(), to, silence, atMost);
  connect(fReceiver.get(), &FtpReceiver::progressed, this, &FtpConnection::progressed);
  connect(fReceiver.get(), &FtpReceiver::fellSilent, this,
          [this] { onEnded(CURLE_OPERATION_TIMEDOUT); });
  fLoop.start(fTransfer.get());
}

void FtpConnection::close() {
  fGreeting.reset();
  dropTransfer();
  dropConnection();
}

bool FtpConnection::newTransfer(const char* scheme, const QString& path,
                                std::chrono::milliseconds limit) {
  fLimit = limit;
  fReply.clear();
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
  curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limit.count()));
  curl_easy_setopt(transfer, CURLOPT_SERVER_RESPONSE_TIMEOUT, inSeconds(limit));
  curl_easy_setopt(transfer, CURLOPT_HEADERFUNCTION, &onReply);
  curl_easy_setopt(transfer, CURLOPT_HEADERDATA, &fReply);
  return true;
}

void FtpConnection::onEnded(int curlCode) {
  const auto code = static_cast<CURLcode>(curlCode);
  const bool isCut = fReceiver && fReceiver->isCut();
  if (code != CURLE_OK && !isCut) {
    const QString error = errorOf(code);
    if (fState == State::Open) dropConnection();
    return finish(error, refusalIn(fReply));
  }
  if (fState == State::Closed) return awaitGreeting();
  if (fState == State::LoggedIn && !fReceiver->finish()) return;
  fState = State::LoggedIn;
  if (isCut) dropConnection();
  finish(fListing.isOpen() ? takeListing() : QString());
}

QString FtpConnection::takeListing() {
  if (fReceiver->isCut()) return tr("The server's list of files has no end.");
  FtpListing listing = parseFtpListing(fListing.data());
  fEntries = std::move(listing.entries);
  return listing.error;
}

void FtpConnection::finish(const QString& error, int refusal) {
  dropTransfer();
  fRefusal = refusal;
  emit ended(error);
}

void FtpConnection::dropTransfer() {
  if (fTransfer) fLoop.stop(fTransfer.get());
  fTransfer.reset();
  fReceiver.reset();
  fListing.close();
}

// libcurl can't log in over a connection that it has only opened; it is handed it again then.
void FtpConnection::awaitGreeting() {
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(fTransfer.get(), CURLINFO_ACTIVESOCKET, &socket);
  fSocket = fcntl(socket, F_DUPFD_CLOEXEC, 0);
  dropTransfer();
  fGreeting = std::make_unique<FtpGreeting>(fSocket, fLimit);
  connect(fGreeting.get(), &FtpGreeting::heard, this, &FtpConnection::onGreeting);
}

void FtpConnection::onGreeting(const QString& error) {
  fGreeting.release()->deleteLater();
  fState = State::Open;
  if (!error.isEmpty()) dropConnection();
  finish(error);
}

// Not by a farewell, for whose answer libcurl would wait.
void FtpConnection::dropConnection() {
  fState = State::Closed;
  if (fSocket < 0) return;
  ::shutdown(fSocket, SHUT_RDWR);
  ::close(std::exchange(fSocket, -1));
}

QString FtpConnection::errorOf(CURLcode code) const {
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
      return fState == State::Closed
                 ? tr("%1 does not answer.").arg(server)
                 : tr("The server has been silent for %1 s.").arg(inSeconds(fLimit));
    case CURLE_REMOTE_FILE_NOT_FOUND:
      return tr("The file is not there, or may not be read. The server answered: %1")
          .arg(QString::fromUtf8(fReply));
    case CURLE_ABORTED_BY_CALLBACK:
      return tr("The server did not say that the file is complete.");
    case CURLE_WRITE_ERROR:
      return tr("The file can't be written: %1.").arg(fReceiver->deviceError());
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
      return tr("The connection to the server was lost.");
    default:
      return refusalIn(fReply) != 0 ? tr("The server answered: %1").arg(QString::fromUtf8(fReply))
                                    : QString::fromUtf8(curl_easy_strerror(code)) + ".";
  }
}
