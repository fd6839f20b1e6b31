// SPDX-License-Identifier: Apache-2.0
// Where a broker listens or is reached.
#pragma once

#include <string>

namespace Ky {

constexpr int kDefaultPort = 9559;

// A TCP address. Immutable.
struct KyAddress {
  std::string host = "127.0.0.1";  // name, IPv4 or IPv6 address
  int port = kDefaultPort;         // 0..65535; 0 only to listen: the system chooses

  // "HOST", "HOST:PORT" or "[IPV6]:PORT". Throws KyError that says what is wrong with `text`.
  static KyAddress parse(const std::string& text);
  // "HOST:PORT", with brackets around an IPv6 address.
  std::string toString() const;
  // 127.0.0.0/8, ::1 or "localhost".
  bool isLoopback() const;

  bool operator==(const KyAddress&) const = default;
};

}  // namespace Ky
