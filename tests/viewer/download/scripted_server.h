// SPDX-License-Identifier: Apache-2.0
// Something that listens, is no FTP server, and says to everybody the same.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

class ScriptedServer {
 public:
  enum class End { Close, StayOpen };

  // Each part is sent by itself.
  explicit ScriptedServer(std::vector<std::string> parts, End end = End::Close)
      : fListening(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(fListening, reinterpret_cast<sockaddr*>(&address), size);
    listen(fListening, 4);
    getsockname(fListening, reinterpret_cast<sockaddr*>(&address), &size);
    fPort = ntohs(address.sin_port);
    fThread = std::thread([this, parts = std::move(parts), end] { serve(parts, end); });
  }
  ~ScriptedServer() {
    fStop = true;
    shutdown(fListening, SHUT_RDWR);
    fThread.join();
    close(fListening);
  }
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  std::uint16_t port() const { return fPort; }

 private:
  void serve(const std::vector<std::string>& parts, End end) {
    const int client = accept(fListening, nullptr, nullptr);
    if (client < 0) return;
    for (const std::string& part : parts) {
      send(client, part.data(), part.size(), MSG_NOSIGNAL);
      // Long enough to arrive by itself, mostly; nothing depends on it.
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    while (end == End::StayOpen && !fStop)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    close(client);
  }

  int fListening;
  std::uint16_t fPort = 0;
  std::atomic<bool> fStop = false;
  std::thread fThread;
};
