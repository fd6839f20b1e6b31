// SPDX-License-Identifier: Apache-2.0
// A robot that speaks the wire format by hand, well or badly, to one desktop.
#pragma once

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

  // Waits for a hello and answers it. False when none comes.
  bool welcomeOne() {
    zmq::message_t route;
    zmq::message_t text;
    do {
      if (!fSocket.recv(route) || !fSocket.recv(text)) return false;
    } while (Ky::decode(text.data<char>(), text.size(), {}, {}).kind != Ky::MessageKind::Hello);
    fDesktop = route.to_string();
    say(Ky::welcomeMessage("raw", false));
    return true;
  }
  void say(const Ky::Message& message) {
    fSocket.send(zmq::buffer(fDesktop), zmq::send_flags::sndmore);
    fSocket.send(zmq::buffer(Ky::encode(message, {}).text));
  }

 private:
  zmq::context_t fContext;
  zmq::socket_t fSocket{fContext, zmq::socket_type::router};
  std::string fDesktop;  // its route
  int fPort = 0;
};
