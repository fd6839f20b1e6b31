#include "viewer/download/ftp_client.h"

#include <poll.h>
#include <unistd.h>

#include <QPointer>
#include <algorithm>
#include <utility>

#include "viewer/download/ftp_greeting.h"

namespace {

// libcurl takes up to a hundred of them in a turn of the event loop: small enough for the window to
// be painted in between, large enough for a fast network.
constexpr long kBufferBytes = 64 * 1024;

// Such a character would end one line of the protocol and begin another.
bool hasControlCharacters(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return c.unicode() < ' ' || c.unicode() == 0x7F; });
}

bool hasEnded(int socket) {
  pollfd state{socket, POLLRDHUP, 0};
  return poll(&state, 1, 0) != 0;
}

}  // namespace

FtpClient::FtpClient(QObject* parent) : QObject(parent), fLoop(std::make_unique<CurlLoop>(this)) {
  connect(fLoop.get(), &CurlLoop::ended, this, &FtpClient::onEnded);
  connect(&fProgressTimer, &QTimer::timeout, this, &FtpClient::watchTransfer);
}

FtpClient::~FtpClient() {
  abort();
}

void FtpClient::setTimeLimits(std::chrono::milliseconds connect, std::chrono::seconds silence) {
  fConnectLimit = connect;
  fSilenceLimit = silence;
}

int FtpClient::connectToHost(const QString& host, quint16 port) {
  return enqueue(ConnectToHost, [this, host, port] {
    dropConnection();
    fHost = host.toUtf8();
    fPort = port;
    startConnecting();
  });
}

int FtpClient::login(const QString& user, const QString& password) {
  return enqueue(Login, [this, user, password] {
    if (hasControlCharacters(user) || hasControlCharacters(password))
      return finish(tr("A user name or password can't contain line breaks."));
    fUser = user.toUtf8();
    fPassword = password.toUtf8();
    startLogin();
  });
}

int FtpClient::get(const QString& file, QIODevice* to) {
  return enqueue(Get, [this, file, to] {
    fDevice = to;
    startGet(file);
  });
}

void FtpClient::abort() {
  fQueue.clear();
  fRunning = false;
  fProgressTimer.stop();
  delete findChild<FtpGreeting*>();
  dropTransfer();
  dropConnection();
}

FtpClient::Command FtpClient::currentCommand() const {
  return fQueue.empty() ? None : fQueue.front().command;
}

int FtpClient::enqueue(Command command, std::function<void()> start) {
  fQueue.push_back({++fLastId, command, std::move(start)});
  QTimer::singleShot(0, this, &FtpClient::startNext);
  return fLastId;
}

void FtpClient::startNext() {
  if (fRunning || fQueue.empty()) return;
  fRunning = true;
  fReply.clear();
  const auto start = fQueue.front().start;
  start();
}

// Whoever hears the signal may abort, give new commands, wait in an event loop, or delete us.
void FtpClient::finish(const QString& error) {
  fError = error;
  const int id = fQueue.front().id;
  const QPointer<FtpClient> self(this);
  emit commandFinished(id, !error.isEmpty());
  if (!self || fQueue.empty() || fQueue.front().id != id) return;
  fQueue.pop_front();
  fRunning = false;
  startNext();
}

void FtpClient::startConnecting() {
  // Of HTTP libcurl opens the connection alone, and says nothing.
  if (!newTransfer("http", {}))
    return finish(tr("'%1' is no name of a computer.").arg(QString(fHost)));
  CURL* transfer = fTransfer.get();
  curl_easy_setopt(transfer, CURLOPT_CONNECT_ONLY, 1L);
  curl_easy_setopt(transfer, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(fConnectLimit.count()));
  fLoop->start(transfer);
}

void FtpClient::startLogin() {
  if (fConnection == Connection::None) return finish(tr("There is no connection to a server."));
  // A server that has waited too long for the user hangs up; libcurl calls it again.
  if (hasEnded(fSocket)) ::close(std::exchange(fSocket, -1));
  newTransfer("ftp", {});
  CURL* transfer = fTransfer.get();
  curl_easy_setopt(transfer, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(transfer, CURLOPT_FRESH_CONNECT, 1L);  // none of an earlier login
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETFUNCTION, &FtpClient::giveSocket);
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(transfer, CURLOPT_SOCKOPTFUNCTION, &FtpClient::keepConnected);
  curl_easy_setopt(transfer, CURLOPT_SOCKOPTDATA, this);
  fLoop->start(transfer);
}

void FtpClient::startGet(const QString& file) {
  if (fConnection != Connection::LoggedIn) return finish(tr("Nobody is logged in."));
  // What ends so would be listed, not fetched.
  if (file.isEmpty() || file.endsWith('/')) return finish(tr("'%1' is no file.").arg(file));
  if (hasControlCharacters(file))
    return finish(tr("A file whose name contains line breaks can't be downloaded."));
  newTransfer("ftp", file);
  CURL* transfer = fTransfer.get();
  curl_easy_setopt(transfer, CURLOPT_BUFFERSIZE, kBufferBytes);
  curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, &FtpClient::onData);
  curl_easy_setopt(transfer, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(transfer, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(transfer, CURLOPT_XFERINFOFUNCTION, &FtpClient::onProgress);
  curl_easy_setopt(transfer, CURLOPT_XFERINFODATA, this);
  fReadBytes = fTotalBytes = 0;
  fToldBytes = -1;
  fSilentPeriods = 0;
  fProgressTimer.start(kPeriod);
  fLoop->start(transfer);
}
