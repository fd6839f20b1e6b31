// SPDX-License-Identifier: Apache-2.0
// Lets in who has a known key: the handler's side of ZAP (https://rfc.zeromq.org/spec/27/).
#pragma once

#include <set>
#include <string>
#include <vector>
#include <zmq.hpp>

namespace Ky {

// Thread-bound: lives on the io thread that polls its socket. Must exist before the sockets of its
// context that want keys are bound.
class Authenticator {
 public:
  // `known` are public keys in Z85 text.
  Authenticator(zmq::context_t& context, const std::vector<std::string>& known);

  zmq::socket_t& socket() { return fSocket; }
  // Answers every request that waits.
  void work();

 private:
  zmq::socket_t fSocket;
  std::set<std::string> fKnown;
};

}  // namespace Ky
