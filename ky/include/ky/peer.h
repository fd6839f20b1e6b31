// SPDX-License-Identifier: Apache-2.0
// Who is calling.
#pragma once

#include <string>

namespace Ky {

// Identifies a broker for as long as it is connected without being lost: two desktops that both
// register "Periscope" are two peers. Immutable.
struct KyPeer {
  std::string id;    // unique; empty for this process's own calls
  std::string name;  // the broker's name; for people

  bool operator==(const KyPeer& other) const { return id == other.id; }
  bool operator<(const KyPeer& other) const { return id < other.id; }
};

}  // namespace Ky
