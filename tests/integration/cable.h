// SPDX-License-Identifier: Apache-2.0
// A connection to a robot on this computer that can be cut, as a network cable can.
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ky/address.h"
#include "zu/unique_fd.h"

// Whoever connects to address() is connected to the robot. While it is cut nothing goes through, in
// neither direction, and nobody is told. Thread-safe.
class Cable {
 public:
  explicit Cable(int robotPort) : fRobotPort(robotPort), fListening(makeSocket()) {
    sockaddr_in place = loopback(0);
    socklen_t size = sizeof place;
    if (bind(fListening.get(), reinterpret_cast<sockaddr*>(&place), size) != 0 ||
        listen(fListening.get(), 16) != 0 ||
        getsockname(fListening.get(), reinterpret_cast<sockaddr*>(&place), &size) != 0)
      throw std::runtime_error("no port for a cable");
    fPort = ntohs(place.sin_port);
    fThread = std::jthread([this](const std::stop_token& stop) { run(stop); });
  }

  Ky::KyAddress address() const { return {"127.0.0.1", fPort}; }
  void cut() { fIsCut = true; }
  void mend() { fIsCut = false; }

 private:
  struct Pair {
    std::array<zu::os::UniqueFd, 2> ends;  // to the desktop, to the robot
    bool isOpen = true;
  };

  static zu::os::UniqueFd makeSocket() {
    return zu::os::UniqueFd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  }
  static sockaddr_in loopback(int port) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(static_cast<std::uint16_t>(port));
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return place;
  }

  void run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      if (fIsCut) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
      } else {
        passOn();
      }
    }
  }

  void passOn() {
    std::vector<pollfd> watched{{fListening.get(), POLLIN, 0}};
    for (const Pair& pair : fPairs)
      for (const auto& end : pair.ends) watched.push_back({end.get(), POLLIN, 0});
    if (poll(watched.data(), watched.size(), 10) <= 0) return;
    for (std::size_t i = 1; i < watched.size(); ++i)
      if (watched[i].revents != 0) passOn(fPairs[(i - 1) / 2], (i - 1) % 2);
    std::erase_if(fPairs, [](const Pair& pair) { return !pair.isOpen; });
    if (watched[0].revents != 0) accept();
  }

  void passOn(Pair& pair, std::size_t from) {
    std::array<char, 65536> bytes;
    const ssize_t count = recv(pair.ends[from].get(), bytes.data(), bytes.size(), 0);
    if (count <= 0) pair.isOpen = false;
    for (ssize_t done = 0; pair.isOpen && done < count;) {
      const ssize_t more = send(pair.ends[1 - from].get(), bytes.data() + done,
                                static_cast<std::size_t>(count - done), MSG_NOSIGNAL);
      if (more <= 0) pair.isOpen = false;
      done += more;
    }
  }

  void accept() {
    Pair pair{{zu::os::UniqueFd(::accept(fListening.get(), nullptr, nullptr)), makeSocket()}, true};
    const sockaddr_in robot = loopback(fRobotPort);
    if (connect(pair.ends[1].get(), reinterpret_cast<const sockaddr*>(&robot), sizeof robot) == 0)
      fPairs.push_back(std::move(pair));
  }

  const int fRobotPort;
  const zu::os::UniqueFd fListening;
  int fPort = 0;
  std::atomic<bool> fIsCut = false;
  std::vector<Pair> fPairs;  // the thread's own
  std::jthread fThread;
};
