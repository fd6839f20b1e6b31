// SPDX-License-Identifier: Apache-2.0
// An FTP server that sends whatever it is told to, and ends as it should or does not.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

// Serves one client, with the same for every file and folder. Not the real server frozen, for that
// could not be stopped at just this moment.
class OddServer {
 public:
  enum class End {
    Good,
    Unsaid,  // it never says that this was all
    None     // it goes on and on
  };

  OddServer(std::string file, End end)
      : fFile(std::move(file)), fEnd(end), fControl(listenAnywhere()), fData(listenAnywhere()) {
    fThread = std::thread([this] { serve(); });
  }
  ~OddServer() {
    for (const int socket : {fControl, fData, fClient.load()}) shutdown(socket, SHUT_RDWR);
    fThread.join();
    for (const int socket : {fControl, fData, fClient.load()}) close(socket);
  }
  OddServer(const OddServer&) = delete;
  OddServer& operator=(const OddServer&) = delete;

  std::uint16_t port() const { return portOf(fControl); }

 private:
  static int listenAnywhere() {
    const int listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(listening, reinterpret_cast<sockaddr*>(&address), sizeof address);
    listen(listening, 1);
    return listening;
  }

  static std::uint16_t portOf(int listening) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
  }

  static void say(int client, const std::string& text) {
    const std::string line = text + "\r\n";
    send(client, line.data(), line.size(), MSG_NOSIGNAL);
  }

  // Until the client hangs up.
  void serve() {
    const int client = accept(fControl, nullptr, nullptr);
    if (client < 0) return;
    fClient = client;
    say(client, "220 hello");
    char bytes[256];
    // Every command comes by itself, for each waits for its answer.
    for (ssize_t size; (size = recv(client, bytes, sizeof bytes, 0)) > 0;)
      answer(client, std::string(bytes, static_cast<std::size_t>(size)).substr(0, 4));
  }

  void answer(int client, const std::string& command) const {
    if (command == "USER") return say(client, "331 and the password?");
    if (command == "PASS") return say(client, "230 welcome");
    if (command == "PWD\r") return say(client, "257 \"/\"");
    if (command == "TYPE") return say(client, "200 so be it");
    if (command == "SIZE") return say(client, "213 " + std::to_string(fFile.size()));
    if (command == "EPSV")
      return say(client, "229 there (|||" + std::to_string(portOf(fData)) + "|)");
    if (command != "RETR" && command != "MLSD") return say(client, "502 what?");
    say(client, "150 here it comes");
    const int data = accept(fData, nullptr, nullptr);
    // Until the client takes no more.
    while (send(data, fFile.data(), fFile.size(), MSG_NOSIGNAL) > 0 && fEnd == End::None) {
    }
    close(data);
    if (fEnd == End::Good) say(client, "226 that was all");
  }

  const std::string fFile;
  const End fEnd;
  const int fControl;
  const int fData;
  std::atomic<int> fClient = -1;
  std::thread fThread;
};
