// SPDX-License-Identifier: Apache-2.0
// The module "KyMemory": values under names, for everybody to read and write.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ky/module.h"
#include "robot/services/memory_changes.h"

namespace robot {

// What all the values together may take. A program that writes or asks for more is told so; what is
// stored stays.
struct MemoryLimits {
  std::size_t keys = 100000;
  std::size_t keyBytes = 1024;                          // one key
  std::size_t totalBytes = 64u << 20;                   // all keys and values
  std::size_t listBytes = Ky::KyLimits().messageBytes;  // what one getListData() answers
  std::size_t changeKeys = 64;                          // of one openChanges()
};

// The methods run on the module's call thread.
class Memory : public Ky::KyModule {
 public:
  explicit Memory(boost::shared_ptr<Ky::KyBroker> broker, MemoryLimits limits = {});

  void insertData(const std::string& key, const Ky::KyValue& value);
  // This and removeData() throw KyError for an unknown key.
  Ky::KyValue getData(const std::string& key);
  // The empty array for an unknown key: who polls many keys for many programs must not lose them
  // all by one that isn't written yet. Throws KyError when the answer would be too large, before it
  // is: a key may be asked for any number of times.
  Ky::KyValue::Array getListData(const std::vector<std::string>& keys);
  void removeData(const std::string& key);
  Ky::KyValue::Array getDataList(const std::string& prefix);
  // Sends the caller what changes under these keys: see ChangeStream.
  void openChanges(const Ky::KyPeer& caller, std::int64_t stream,
                   const std::vector<std::string>& keys);

  void peerLeft(const Ky::KyPeer& peer) override;
  void stop() override;

 private:
  struct Entry {
    MemoryValue value;
    std::size_t bytes = 0;
  };
  const Entry& require(const std::string& key) const;
  void requireKey(const std::string& key) const;

  const MemoryLimits fLimits;
  std::map<std::string, Entry> fEntries;
  std::size_t fBytes = 0;  // of all entries
  MemoryChanges fChanges;
};

// About what a value takes in memory.
std::size_t bytesOf(const Ky::KyValue& value);

}  // namespace robot
