// SPDX-License-Identifier: Apache-2.0
// A peer that speaks the wire format by hand, well or badly.
#pragma once

#include <optional>
#include <string>
#include <zmq.hpp>

#include "ky/address.h"
#include "wire/message.h"

// Thread-bound.
class RawPeer {
 public:
  explicit RawPeer(const Ky::KyAddress& robot) {
    fSocket.set(zmq::sockopt::linger, 0);
    fSocket.set(zmq::sockopt::rcvtimeo, 10'000);
    fSocket.connect("tcp://" + robot.toString());
  }

  void send(const Ky::Message& message) { sendText(Ky::encode(message, {}).text); }
  void sendText(const std::string& text) { fSocket.send(zmq::buffer(text)); }
  zmq::socket_t& socket() { return fSocket; }

  // The next message; nothing when none comes.
  std::optional<Ky::Message> receive() {
    zmq::message_t text;
    if (!fSocket.recv(text)) return std::nullopt;
    std::vector<Ky::KyBinary> attachments;
    for (zmq::message_t attachment; fSocket.get(zmq::sockopt::rcvmore);) {
      if (!fSocket.recv(attachment)) return std::nullopt;
      attachments.push_back(Ky::KyBinary::copyOf(attachment.data(), attachment.size()));
    }
    return Ky::decode(text.data<char>(), text.size(), attachments, {});
  }
  // Says hello and waits for the welcome.
  bool join(const std::string& id = "raw", const std::vector<std::string>& modules = {}) {
    send(Ky::helloMessage(id, "raw", modules));
    const auto answer = receive();
    return answer && answer->kind == Ky::MessageKind::Welcome;
  }

 private:
  zmq::context_t fContext;
  zmq::socket_t fSocket{fContext, zmq::socket_type::dealer};
};
