// SPDX-License-Identifier: Apache-2.0
#include "ky/address.h"

#include <charconv>

#include "ky/error.h"

namespace Ky {
namespace {

int parsePort(const std::string& text, const std::string& whole) {
  int port = -1;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, port);
  if (parsed.ec != std::errc() || parsed.ptr != end || port < 0 || port > 65535)
    throw KyError("'" + whole + "' is no address: '" + text + "' is no port from 0 to 65535");
  return port;
}

}  // namespace

KyAddress KyAddress::parse(const std::string& text) {
  KyAddress address;
  std::string port;
  bool hasPort = false;
  if (text.starts_with('[')) {
    const auto end = text.find(']');
    if (end == std::string::npos || (end + 1 < text.size() && text[end + 1] != ':'))
      throw KyError("'" + text + "' is no address: write [IPV6] or [IPV6]:PORT");
    address.host = text.substr(1, end - 1);
    hasPort = end + 1 < text.size();
    if (hasPort) port = text.substr(end + 2);
  } else if (const auto colon = text.find(':'); colon == text.rfind(':')) {
    address.host = text.substr(0, colon);
    hasPort = colon != std::string::npos;
    if (hasPort) port = text.substr(colon + 1);
  } else {
    address.host = text;  // a bare IPv6 address
  }
  if (address.host.empty() || address.host.find_first_of(" \t\n/") != std::string::npos)
    throw KyError("'" + text + "' is no address: write HOST or HOST:PORT");
  if (hasPort) address.port = parsePort(port, text);
  return address;
}

std::string KyAddress::toString() const {
  const bool isIpv6 = host.find(':') != std::string::npos;
  return (isIpv6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

bool KyAddress::isLoopback() const {
  return host == "localhost" || host == "::1" || host.starts_with("127.");
}

}  // namespace Ky
