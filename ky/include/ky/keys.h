// SPDX-License-Identifier: Apache-2.0
// Who may talk to a robot beyond loopback: CURVE key pairs (https://rfc.zeromq.org/spec/26/), kept
// as small text files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Ky {

// A pair in Z85 text, 40 characters each.
struct KyKeyPair {
  std::string publicKey;
  std::string secretKey;

  static KyKeyPair generate();
};

// A folder with one machine's own pair and the public keys of the peers that it knows:
//
//   own.secret          the pair, readable by its owner only
//   own.public          the public half, to be copied to the peers
//   known/NAME.public   the public keys of known peers
//
// Thread-bound. Every function throws KyError that names the file and what to do.
class KyKeyStore {
 public:
  explicit KyKeyStore(std::filesystem::path folder);
  // $XDG_CONFIG_HOME/ky/keys, by default ~/.config/ky/keys.
  static std::filesystem::path defaultFolder();

  const std::filesystem::path& folder() const { return fFolder; }
  std::filesystem::path knownFolder() const;
  bool exists() const;
  // Makes the folder and its own pair. Never overwrites a pair.
  KyKeyPair create();
  KyKeyPair own() const;
  // Stores a peer's public key under a name of letters, digits, '.', '_', ':' and '-', in place of
  // the one of before. Whoever reads meanwhile finds one of the two.
  void add(const std::string& name, const std::string& publicKey);
  // Empty when there is none of that name.
  std::string known(const std::string& name) const;
  std::vector<std::string> knownKeys() const;
  // Leaves out the keys that can't be read and says in `problems` which and why, instead of
  // throwing.
  std::vector<std::string> knownKeys(std::vector<std::string>& problems) const;

 private:
  std::filesystem::path fFolder;
};

// Throws KyError unless `text` is a key in Z85 text.
void requireKey(const std::string& text);

}  // namespace Ky
