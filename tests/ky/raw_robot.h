// SPDX-License-Identifier: Apache-2.0
// A robot that speaks the wire format by hand, well or badly, to one desktop.
#pragma once

#include <optional>
#include <string>
#include <zmq.hpp>

#include "wire/message.h"

// Thread-bound.
class RawRobot {
 public:
  RawRobot() {
    fSocket.set(zmq::sockopt::linger, 0);
    fSocket.set(zmq::sockopt::rcvtimeo, 10'000);
    fSocket.bind("tcp://127.0.0.1:*");
    const std::string endpoint = fSocket.get(zmq::sockopt::last_endpoint);
    fPort = std::stoi(endpoint.substr(endpoint.rfind(':') + 1));
  }
  int port() const { return fPort; }

  // Waits for a hello, answers it and returns the id of who said it; empty when none comes.
  std::string welcomeOne(bool isKnown = false) {
    while (const auto message = receive()) {
      if (message->kind != Ky::MessageKind::Hello) continue;
      say(Ky::welcomeMessage("raw", isKnown));
      return message->fields[1].asString();
    }
    return {};
  }
  // What is said next is answered, too: with a goodbye.
  void welcomeOneAndForgetIt() {
    welcomeOne();
    if (receive()) say(Ky::byeMessage(Ky::kSayHelloFirst));
  }
  void say(const Ky::Message& message) {
    fSocket.send(zmq::buffer(fDesktop), zmq::send_flags::sndmore);
    fSocket.send(zmq::buffer(Ky::encode(message, {}).text));
  }

 private:
  // The next message of anybody, without what large ones consist of; nothing when none comes.
  std::optional<Ky::Message> receive() {
    zmq::message_t route;
    zmq::message_t text;
    if (!fSocket.recv(route) || !fSocket.recv(text)) return std::nullopt;
    fDesktop = route.to_string();
    return Ky::decode(text.data<char>(), text.size(), {}, {});
  }

  zmq::context_t fContext;
  zmq::socket_t fSocket{fContext, zmq::socket_type::router};
  std::string fDesktop;  // its route
  int fPort = 0;
};
