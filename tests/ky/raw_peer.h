// SPDX-License-Identifier: Apache-2.0
// A peer that speaks the wire format by hand, well or badly.
#pragma once

#include <optional>
#include <string>
#include <zmq.hpp>

#include "ky/address.h"
#include "wire/message.h"
#include "wire/pieces.h"

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

  // From here on pieces are received as they are, and not acknowledged.
  void readPieces() { fJoins = false; }
  // The next message, whole; nothing when none comes. Acknowledges pieces.
  std::optional<Ky::Message> receive() {
    for (int i = 0; i < kMostPieces; ++i) {
      zmq::message_t text;
      if (!fSocket.recv(text)) return std::nullopt;
      std::vector<Ky::KyBinary> attachments;
      for (zmq::message_t attachment; fSocket.get(zmq::sockopt::rcvmore);) {
        if (!fSocket.recv(attachment)) return std::nullopt;
        attachments.push_back(Ky::KyBinary::copyOf(attachment.data(), attachment.size()));
      }
      Ky::Message message = Ky::decode(text.data<char>(), text.size(), attachments, {});
      if (message.kind != Ky::MessageKind::Piece || !fJoins) return message;
      send(Ky::receivedMessage(message.id()));
      const auto joined = fJoiner.add(message, std::move(attachments));
      if (joined)
        return Ky::decode(reinterpret_cast<const char*>(joined->text.data()), joined->text.size(),
                          joined->attachments, {});
    }
    return std::nullopt;
  }
  // Says hello and waits for the welcome.
  bool join(const std::string& id = "raw", const std::vector<std::string>& modules = {}) {
    send(Ky::helloMessage(id, "raw", modules));
    const auto answer = receive();
    return answer && answer->kind == Ky::MessageKind::Welcome;
  }

 private:
  static constexpr int kMostPieces = 10'000;

  bool fJoins = true;
  Ky::Joiner fJoiner{{}};
  zmq::context_t fContext;
  zmq::socket_t fSocket{fContext, zmq::socket_type::dealer};
};
