// SPDX-License-Identifier: Apache-2.0
// Lets in who has a known key: the handler's side of ZAP (https://rfc.zeromq.org/spec/27/).
#pragma once

#include <zmq.hpp>

#include "transport/known_keys.h"

namespace Ky {

// Thread-bound: lives on the io thread that polls its socket. Must exist before the sockets of its
// context that want keys are bound.
class Authenticator {
 public:
  // Who comes is let in when `store` knows the key at that time; who is in stays.
  Authenticator(zmq::context_t& context, const KyKeyStore& store);

  zmq::socket_t& socket() { return fSocket; }
  // Answers every request that waits.
  void work();

 private:
  zmq::socket_t fSocket;
  KnownKeys fKnown;
};

}  // namespace Ky
