// SPDX-License-Identifier: Apache-2.0
#include "slow_link.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <deque>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

sockaddr_in addressOf(in_addr_t host, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(host);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

const sockaddr* generic(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

void setUp(int socket) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
  ::fcntl(socket, F_SETFL, O_NONBLOCK);
}

int connectTo(int port) {
  const int robot = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = addressOf(INADDR_LOOPBACK, port);
  ::connect(robot, generic(address), sizeof(address));
  setUp(robot);
  return robot;
}

// One direction: what was read waits here until it has come all the way.
class Way {
 public:
  // False at the end of the stream.
  bool read(int from, Clock::time_point due) {
    std::array<char, 65536> bytes{};
    const ssize_t count = ::recv(from, bytes.data(), bytes.size(), 0);
    if (count > 0) fChunks.push_back({due, {bytes.data(), static_cast<std::size_t>(count)}});
    return count > 0 || (count < 0 && errno == EAGAIN);
  }
  void write(int to) {
    while (!fChunks.empty() && fChunks.front().due <= Clock::now()) {
      std::string& bytes = fChunks.front().bytes;
      const ssize_t count = ::send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count < 0) return;
      bytes.erase(0, static_cast<std::size_t>(count));
      if (!bytes.empty()) return;
      fChunks.pop_front();
    }
  }

 private:
  struct Chunk {
    Clock::time_point due;
    std::string bytes;
  };
  std::deque<Chunk> fChunks;
};

}  // namespace

struct SlowLink::Connection {
  ~Connection() {
    ::close(desktop);
    if (robot >= 0) ::close(robot);
  }

  int desktop = -1;
  int robot = -1;            // once the desktop's last word of the handshake has arrived
  Clock::time_point isMade;  // for the desktop
  bool ended = false;
  Way up;
  Way down;
};

SlowLink::SlowLink(const Ky::KyAddress& robot, std::chrono::milliseconds way)
    : fRobotPort(robot.port), fWay(way) {
  fListener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = addressOf(INADDR_ANY, 0);
  sockaddr_in bound{};
  socklen_t size = sizeof(bound);
  if (::bind(fListener, generic(address), sizeof(address)) != 0 || ::listen(fListener, 16) != 0 ||
      ::getsockname(fListener, reinterpret_cast<sockaddr*>(&bound), &size) != 0)
    throw std::runtime_error("the slow link can't listen");
  ::fcntl(fListener, F_SETFL, O_NONBLOCK);
  fPort = ntohs(bound.sin_port);
  fThread = std::thread([this] { run(); });
}

SlowLink::~SlowLink() {
  fStopping = true;
  fThread.join();
  ::close(fListener);
}

void SlowLink::accept() {
  const int desktop = ::accept4(fListener, nullptr, nullptr, SOCK_CLOEXEC);
  if (desktop < 0) return;
  setUp(desktop);
  Connection& connection = fConnections.emplace_back();
  connection.desktop = desktop;
  connection.isMade = Clock::now() + 2 * fWay;
}

// A millisecond of waiting at most: what is due goes out then.
void SlowLink::run() {
  while (!fStopping) {
    std::vector<pollfd> sockets = {{fListener, POLLIN, 0}};
    for (const Connection& connection : fConnections) {
      sockets.push_back({connection.desktop, POLLIN, 0});
      if (connection.robot >= 0) sockets.push_back({connection.robot, POLLIN, 0});
    }
    ::poll(sockets.data(), sockets.size(), 1);
    accept();
    const Clock::time_point now = Clock::now();
    for (Connection& connection : fConnections) {
      if (connection.robot < 0 && now >= connection.isMade + fWay)
        connection.robot = connectTo(fRobotPort);
      const bool isUp =
          connection.up.read(connection.desktop, std::max(now, connection.isMade) + fWay);
      const bool isDown =
          connection.robot < 0 || connection.down.read(connection.robot, now + fWay);
      connection.ended = !isUp || !isDown;
      if (connection.robot >= 0) connection.up.write(connection.robot);
      connection.down.write(connection.desktop);
    }
    fConnections.remove_if([](const Connection& connection) { return connection.ended; });
  }
  fConnections.clear();
}

}  // namespace bench
