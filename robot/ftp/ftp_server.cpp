// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_server.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>

#include "ky/error.h"
#include "robot/ftp/ftp_program.h"
#include "robot/ftp/ftp_session.h"

namespace robot {

using zu::os::UniqueFd;

namespace {

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressList lookUp(const Ky::KyAddress& address) {
  addrinfo hints{};
  hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const std::string port = std::to_string(address.port);
  if (const int error = getaddrinfo(address.host.c_str(), port.c_str(), &hints, &found))
    throw Ky::KyError("the FTP server can't listen on " + address.toString() + ": " +
                      gai_strerror(error));
  return {found, &freeaddrinfo};
}

std::string reasonOf(int error, const Ky::KyAddress& address) {
  const std::string port = std::to_string(address.port);
  switch (error) {
    case EADDRINUSE:
      return "another program has that port. Stop it, or serve on another port.";
    case EACCES:
      return "this user may not use ports as low as " + port +
             ". Start the robot as root, or allow it with 'sysctl "
             "net.ipv4.ip_unprivileged_port_start=" +
             port + "'.";
    case EADDRNOTAVAIL:
      return "this computer has no such address.";
    default:
      return std::strerror(error);
  }
}

UniqueFd listenOn(const Ky::KyAddress& address) {
  const AddressList where = lookUp(address);
  UniqueFd fd(socket(where->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const int on = 1;
  setsockopt(fd.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (bind(fd.get(), where->ai_addr, where->ai_addrlen) != 0 || listen(fd.get(), 16) != 0)
    throw Ky::KyError("the FTP server can't listen on " + address.toString() + ": " +
                      reasonOf(errno, address));
  return fd;
}

int portOf(const UniqueFd& fd) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  std::array<char, 8> port{};
  getsockname(fd.get(), reinterpret_cast<sockaddr*>(&address), &size);
  getnameinfo(reinterpret_cast<sockaddr*>(&address), size, nullptr, 0, port.data(), port.size(),
              NI_NUMERICSERV);
  return std::atoi(port.data());
}

// Becomes readable at the end of a process. By its number: the C library of Debian 12 declares its
// function for C only.
UniqueFd endOf(pid_t pid) {
  return UniqueFd(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
}

// Nobody without a password, everybody in the folder, no name look-ups, no log but ours.
std::vector<std::string> commandFor(const FtpAccount& account) {
  return {ftpProgram("pure-ftpd"),
          "-f",
          "none",
          "-E",
          "-A",
          "-H",
          "-u",
          "1",
          "-l",
          "puredb:" + account.database().string()};
}

}  // namespace

FtpServer::FtpServer(const FtpServerOptions& options)
    : fAddress(options.listen),
      fConfinement(options.home),
      fAccount(options.user, options.password, options.home, fConfinement.uid(),
               fConfinement.gid()),
      fCommand(commandFor(fAccount)),
      fListening(listenOn(options.listen)),
      fWakeUp(eventfd(0, EFD_CLOEXEC)) {
  fAddress.port = portOf(fListening);
  fThread = std::jthread([this](const std::stop_token& stop) { serve(stop); });
}

FtpServer::~FtpServer() {
  fThread.request_stop();
  eventfd_write(fWakeUp.get(), 1);
  fThread.join();
}

// Its own thread: the system ends a session when the thread that started it does.
void FtpServer::serve(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    std::vector<pollfd> events = {{fWakeUp.get(), POLLIN, 0}, {fListening.get(), POLLIN, 0}};
    for (const Session& session : fSessions) events.push_back({session.ended.get(), POLLIN, 0});
    if (poll(events.data(), events.size(), -1) < 0) continue;
    forgetEnded();
    if (events[1].revents != 0) welcome();
  }
  for (const Session& session : fSessions) kill(session.pid, SIGKILL);
  for (const Session& session : fSessions) waitpid(session.pid, nullptr, 0);
}

void FtpServer::welcome() {
  UniqueFd client(accept4(fListening.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (client.get() < 0) {
    // Out of descriptors, perhaps; the client waits meanwhile.
    if (errno != EAGAIN && errno != ECONNABORTED) poll(nullptr, 0, 100);
  } else if (fSessions.size() < kMaxSessions) {
    start(std::move(client));
  } else {
    constexpr std::string_view kFull = "421 Too many connections, try again later.\r\n";
    send(client.get(), kFull.data(), kFull.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  }
}

void FtpServer::start(UniqueFd client) {
  const pid_t pid = startFtpSession(fCommand, fConfinement, client.get());
  if (pid > 0) fSessions.push_back({pid, endOf(pid)});
}

void FtpServer::forgetEnded() {
  std::erase_if(fSessions, [](const Session& session) {
    return waitpid(session.pid, nullptr, WNOHANG) == session.pid;
  });
}

}  // namespace robot
