// SPDX-License-Identifier: Apache-2.0
// Keys of a robot and of a desktop that know each other.
#pragma once

#include <QTemporaryDir>
#include <string>

#include "ky/address.h"
#include "ky/keys.h"

namespace bench {

// Folders of their own, gone at the end. Thread-bound.
class KnownKeys {
 public:
  KnownKeys() : fPublicKey(robotsStore().create().publicKey) {
    robotsStore().add("desktop", desktopsStore().create().publicKey);
  }

  std::string robots() const { return robotsStore().folder().string(); }
  // For a robot at this address.
  std::string desktops(const Ky::KyAddress& robot) const {
    desktopsStore().add(robot.toString(), fPublicKey);
    return desktopsStore().folder().string();
  }
  // Keys are used beyond loopback only, as which this counts.
  static Ky::KyAddress beyondLoopback(int port) { return {"0.0.0.0", port}; }

 private:
  Ky::KyKeyStore robotsStore() const { return Ky::KyKeyStore(path("robot")); }
  Ky::KyKeyStore desktopsStore() const { return Ky::KyKeyStore(path("desktop")); }
  std::string path(const char* whose) const { return fFolder.filePath(whose).toStdString(); }

  QTemporaryDir fFolder;
  const std::string fPublicKey;
};

}  // namespace bench
