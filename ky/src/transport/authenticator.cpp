// SPDX-License-Identifier: Apache-2.0
#include "transport/authenticator.h"

#include <array>
#include <string>
#include <vector>

#include "zu/log.h"

namespace Ky {
namespace {

constexpr std::size_t kKeyBytes = 32;
constexpr std::size_t kCredentials = 6;  // the frame in a request that holds the key

std::string publicKeyOf(const std::vector<zmq::message_t>& request) {
  if (request.size() <= kCredentials || request[5].to_string_view() != "CURVE" ||
      request[kCredentials].size() != kKeyBytes)
    return {};
  std::array<char, 41> text{};
  zmq_z85_encode(text.data(), request[kCredentials].data<std::uint8_t>(), kKeyBytes);
  return text.data();
}

}  // namespace

Authenticator::Authenticator(zmq::context_t& context, const KyKeyStore& store)
    : fSocket(context, zmq::socket_type::rep), fKnown(store) {
  fSocket.set(zmq::sockopt::linger, 0);
  fSocket.bind("inproc://zeromq.zap.01");
}

void Authenticator::work() {
  while (true) {
    std::vector<zmq::message_t> request;
    do {
      request.emplace_back();
      if (!fSocket.recv(request.back(), zmq::recv_flags::dontwait)) return;
    } while (request.back().more());
    const std::string key = publicKeyOf(request);
    const bool known = fKnown.contains(key);
    if (!known)
      zu::log::warning("ky", "authenticate")
          << "refused a peer with the unknown key '" << key << "'";
    const std::string id = request.size() > 1 ? request[1].to_string() : "";
    const std::array<std::string, 6> answer = {
        "1.0", id, known ? "200" : "400", known ? "OK" : "unknown key", known ? key : "", ""};
    for (std::size_t i = 0; i < answer.size(); ++i)
      fSocket.send(zmq::buffer(answer[i]),
                   i + 1 < answer.size() ? zmq::send_flags::sndmore : zmq::send_flags::none);
  }
}

}  // namespace Ky
