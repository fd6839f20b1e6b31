// SPDX-License-Identifier: Apache-2.0
#include "support/link.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

using zu::os::UniqueFd;

namespace {

constexpr int kSocketBuffer = 256 << 10;  // bytes: the system would take megabytes for the link
constexpr int kBacklog = 64;

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

void setOption(int fd, int level, int option, int value) {
  setsockopt(fd, level, option, &value, sizeof value);
}

UniqueFd newSocket() {
  UniqueFd fd(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  setOption(fd.get(), SOL_SOCKET, SO_RCVBUF, kSocketBuffer);
  setOption(fd.get(), IPPROTO_TCP, TCP_NODELAY, 1);
  return fd;
}

// Several sockets of ours may have one port, of which one listens.
UniqueFd bindTo(int port) {
  UniqueFd fd = newSocket();
  setOption(fd.get(), SOL_SOCKET, SO_REUSEADDR, 1);
  setOption(fd.get(), SOL_SOCKET, SO_REUSEPORT, 1);
  const sockaddr_in address = loopback(port);
  if (bind(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error(std::string("no port for the link: ") + std::strerror(errno));
  return fd;
}

int portOf(int fd) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

// A failure shows when the connection is used.
UniqueFd connectTo(int port) {
  UniqueFd fd = newSocket();
  const sockaddr_in address = loopback(port);
  connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return fd;
}

void resetOnClose(int fd) {
  const linger none{1, 0};
  setsockopt(fd, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

}  // namespace

struct Link::Connection {
  Connection(UniqueFd viewerFd, UniqueFd robotFd, const LinkSettings& to, const LinkSettings& from,
             Time now)
      : viewer(std::move(viewerFd)),
        robot(std::move(robotFd)),
        toRobot(viewer.get(), robot.get(), to, now),
        toViewer(robot.get(), viewer.get(), from, now) {}

  void reset() const {
    resetOnClose(viewer.get());
    resetOnClose(robot.get());
  }
  // False when it is over; `viewerReady` and `robotReady`: what poll() says of the sockets.
  bool pump(short viewerReady, short robotReady, Time now) {
    const bool intact = pump(toRobot, viewerReady, now) && pump(toViewer, robotReady, now);
    if (!intact) reset();
    return intact && !(toRobot.isOver() && toViewer.isOver());
  }
  static bool pump(LinkStream& stream, short ready, Time now) {
    if (!stream.write(now)) return false;
    if (ready == 0 || !stream.wantsToRead(now)) return true;
    return stream.read(now) && stream.write(now);
  }

  UniqueFd viewer;
  UniqueFd robot;
  LinkStream toRobot;
  LinkStream toViewer;
};

// What the thread waits for: the wake-up, the listener, and two sockets a connection.
struct Link::Poll {
  void add(int fd, bool read, bool write) {
    const int events = (read ? POLLIN : 0) | (write ? POLLOUT : 0);
    fds.push_back({events == 0 ? -1 : fd, static_cast<short>(events), 0});
  }
  void add(const Connection& connection, Time now) {
    const LinkStream &to = connection.toRobot, &from = connection.toViewer;
    add(connection.viewer.get(), to.wantsToRead(now), from.wantsToWrite(now));
    add(connection.robot.get(), from.wantsToRead(now), to.wantsToWrite(now));
  }
  void wait(std::optional<Time> until, Time now) {
    timespec timeout{};
    if (until) {
      const auto left = std::chrono::nanoseconds(std::max(*until, now) - now);
      timeout.tv_sec = left.count() / 1'000'000'000;
      timeout.tv_nsec = left.count() % 1'000'000'000;
    }
    ppoll(fds.data(), fds.size(), until ? &timeout : nullptr, nullptr);
  }

  std::vector<pollfd> fds;
};

Link::Link(int robotPort)
    : fPlace(bindTo(0)),
      fWake(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      fPort(portOf(fPlace.get())),
      fRobotPort(robotPort) {
  listenAgain();
  fThread = std::thread([this] { run(); });
}

Link::~Link() {
  {
    const zu::MutexLock guard(fMutex);
    fStop = true;
  }
  eventfd_write(fWake.get(), 1);
  fThread.join();
}

// ---- asked from outside

void Link::onThread(const std::function<void()>& task) {
  bool done = false;
  const zu::MutexLock guard(fMutex);
  fTasks.push_back([&] {
    task();
    done = true;
  });
  eventfd_write(fWake.get(), 1);
  while (!done) fDone.wait(fMutex);
}

void Link::setRobotPort(int port) {
  onThread([&] { fRobotPort = port; });
}

void Link::set(const LinkSettings& bothWays) {
  onThread([&] {
    const Time now = LinkStream::Clock::now();
    fToRobot = fToViewer = bothWays;
    for (Connection& connection : fConnections) {
      connection.toRobot.apply(bothWays, now);
      connection.toViewer.apply(bothWays, now);
    }
  });
}

void Link::set(LinkWay way, const LinkSettings& settings) {
  onThread([&] {
    const Time now = LinkStream::Clock::now();
    (way == LinkWay::ToRobot ? fToRobot : fToViewer) = settings;
    for (Connection& connection : fConnections)
      (way == LinkWay::ToRobot ? connection.toRobot : connection.toViewer).apply(settings, now);
  });
}

void Link::setDoor(LinkDoor door) {
  onThread([&] {
    fDoor = door;
    if (door == LinkDoor::Closed)
      fListener = UniqueFd();
    else if (fListener.get() < 0)
      listenAgain();
  });
}

void Link::cut() {
  onThread([&] {
    for (Connection& connection : fConnections) {
      connection.toRobot.cut();
      connection.toViewer.cut();
    }
  });
}

void Link::reset() {
  onThread([&] {
    for (const Connection& connection : fConnections) connection.reset();
    fConnections.clear();
  });
}

void Link::halfClose(LinkWay way) {
  onThread([&] {
    for (Connection& connection : fConnections)
      (way == LinkWay::ToRobot ? connection.toRobot : connection.toViewer).cut();
  });
}

std::size_t Link::connections() {
  std::size_t result = 0;
  onThread([&] { result = fConnections.size(); });
  return result;
}

std::size_t Link::accepted() {
  std::size_t result = 0;
  onThread([&] { result = fAccepted; });
  return result;
}

// ---- the link's thread

void Link::run() {
  while (doTasks()) {
    Time now = LinkStream::Clock::now();
    Poll poll;
    poll.add(fWake.get(), true, false);
    poll.add(fListener.get(), fListener.get() >= 0, false);
    for (const Connection& connection : fConnections) poll.add(connection, now);
    poll.wait(nextTurn(now), now);
    now = LinkStream::Clock::now();
    pumpAll(poll, now);
    if (poll.fds[1].revents != 0) acceptAll(now);
  }
}

// False when it is time to end.
bool Link::doTasks() {
  eventfd_t ignored = 0;
  eventfd_read(fWake.get(), &ignored);
  const zu::MutexLock guard(fMutex);
  for (const auto& task : fTasks) task();
  fTasks.clear();
  fDone.notifyAll();
  return !fStop;
}

void Link::listenAgain() {
  UniqueFd fd = bindTo(fPort);
  if (listen(fd.get(), kBacklog) != 0)
    throw std::runtime_error(std::string("the link can't listen: ") + std::strerror(errno));
  fListener = std::move(fd);
}

void Link::acceptAll(Time now) {
  for (;;) {
    UniqueFd viewer(accept4(fListener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (viewer.get() < 0) return;
    ++fAccepted;
    setOption(viewer.get(), IPPROTO_TCP, TCP_NODELAY, 1);
    if (fDoor == LinkDoor::Slammed)
      resetOnClose(viewer.get());
    else
      fConnections.emplace_back(std::move(viewer), connectTo(fRobotPort), fToRobot, fToViewer, now);
  }
}

void Link::pumpAll(const Poll& poll, Time now) {
  auto ready = poll.fds.begin() + 2;
  for (auto connection = fConnections.begin(); connection != fConnections.end(); ready += 2) {
    const bool goesOn = connection->pump(ready[0].revents, ready[1].revents, now);
    connection = goesOn ? std::next(connection) : fConnections.erase(connection);
  }
}

std::optional<Link::Time> Link::nextTurn(Time now) const {
  std::optional<Time> next;
  for (const Connection& connection : fConnections)
    for (const LinkStream* stream : {&connection.toRobot, &connection.toViewer})
      if (const auto turn = stream->nextTurn(now); turn && (!next || *turn < *next)) next = turn;
  return next;
}
