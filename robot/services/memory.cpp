// SPDX-License-Identifier: Apache-2.0
#include "robot/services/memory.h"

namespace robot {

using Ky::KyError;
using Ky::KyValue;

std::size_t bytesOf(const KyValue& value) {
  std::size_t bytes = sizeof(KyValue);
  if (value.isString()) bytes += value.asString().size();
  if (value.isBinary()) bytes += value.asBinary().size();
  if (value.isArray())
    for (const KyValue& element : value.asArray()) bytes += bytesOf(element);
  return bytes;
}

Memory::Memory(boost::shared_ptr<Ky::KyBroker> broker, MemoryLimits limits)
    : KyModule(std::move(broker), "KyMemory"), fLimits(limits) {
  setModuleDescription("Values under names, for everybody to read and write.");

  functionName("insertData", getName(), "Stores a value; replaces the one before.");
  addParam("key", "the name");
  addParam("value", "of any type");
  bindMethod(&Memory::insertData);

  functionName("getData", getName(), "The value under a name.");
  addParam("key", "the name");
  setReturn("value", "as stored");
  bindMethod(&Memory::getData);

  functionName("getListData", getName(), "The values under several names at once.");
  addParam("keys", "the names");
  setReturn("values", "one for each name, in the same order; the empty array for an unknown one");
  bindMethod(&Memory::getListData);

  functionName("removeData", getName(), "Forgets a value.");
  addParam("key", "the name");
  bindMethod(&Memory::removeData);

  functionName("getDataList", getName(), "The names that begin with a text.");
  addParam("prefix", "the text; empty: all names");
  setReturn("keys", "the names, sorted");
  bindMethod(&Memory::getDataList);

  functionName("openChanges", getName(),
               "Streams [[name, value], ..]: first the values that there are, then each time what "
               "has changed; nothing for a value that was removed.");
  addParam("stream", "its id");
  addParam("keys", "the names");
  bindMethod(&Memory::openChanges);
  offer("openChanges");
}

void Memory::requireKey(const std::string& key) const {
  if (key.size() > fLimits.keyBytes)
    throw KyError("a key may have " + std::to_string(fLimits.keyBytes) + " bytes, this one has " +
                  std::to_string(key.size()));
}

void Memory::insertData(const std::string& key, const KyValue& value) {
  requireKey(key);
  const auto found = fEntries.find(key);
  if (found == fEntries.end() && fEntries.size() >= fLimits.keys)
    throw KyError("the memory is full: it holds " + std::to_string(fLimits.keys) +
                  " keys; remove some first");
  const std::size_t before = found == fEntries.end() ? 0 : found->second.bytes;
  const std::size_t after = key.size() + bytesOf(value);
  if (fBytes - before + after > fLimits.totalBytes)
    throw KyError("the memory is full: \"" + key + "\" needs " + std::to_string(after) +
                  " bytes, of " + std::to_string(fLimits.totalBytes) + " are free " +
                  std::to_string(fLimits.totalBytes - (fBytes - before)));
  const bool isNew = found == fEntries.end() || *found->second.value != value;
  Entry& entry = fEntries[key];
  entry = {std::make_shared<const KyValue>(value), after};
  fBytes = fBytes - before + after;
  if (isNew) fChanges.change(key, entry.value);
}

const Memory::Entry& Memory::require(const std::string& key) const {
  const auto found = fEntries.find(key);
  if (found == fEntries.end()) throw KyError("there is no data under the key \"" + key + "\"");
  return found->second;
}

KyValue Memory::getData(const std::string& key) {
  return *require(key).value;
}

KyValue::Array Memory::getListData(const std::vector<std::string>& keys) {
  KyValue::Array values;
  std::size_t bytes = 0;
  for (const std::string& key : keys) {
    const auto found = fEntries.find(key);
    if (found == fEntries.end()) {
      values.push_back(KyValue::array());
      continue;
    }
    bytes += found->second.bytes;
    if (bytes > fLimits.listBytes)
      throw KyError("the values don't fit into one answer: with \"" + key + "\" they take " +
                    std::to_string(bytes) + " bytes, of " + std::to_string(fLimits.listBytes) +
                    " at most; ask for fewer at once");
    values.push_back(*found->second.value);
  }
  return values;
}

void Memory::removeData(const std::string& key) {
  fBytes -= require(key).bytes;
  fEntries.erase(key);
  fChanges.change(key, nullptr);
}

KyValue::Array Memory::getDataList(const std::string& prefix) {
  KyValue::Array keys;
  for (auto at = fEntries.lower_bound(prefix);
       at != fEntries.end() && at->first.compare(0, prefix.size(), prefix) == 0; ++at)
    keys.emplace_back(at->first);
  return keys;
}

void Memory::openChanges(const Ky::KyPeer& caller, std::int64_t stream,
                         const std::vector<std::string>& keys) {
  if (keys.empty()) throw KyError("whose changes? name at least one key");
  if (keys.size() > fLimits.changeKeys)
    throw KyError("one stream has the changes of " + std::to_string(fLimits.changeKeys) +
                  " keys at most, not of " + std::to_string(keys.size()) + "; open several");
  std::map<std::string, MemoryValue> values;
  for (const std::string& key : keys) {
    requireKey(key);
    const auto found = fEntries.find(key);
    values[key] = found == fEntries.end() ? nullptr : found->second.value;
  }
  fChanges.requireRoom(caller, stream);
  fChanges.open(caller, stream, {getParentBroker()->sendStream(caller, stream), values});
}

void Memory::peerLeft(const Ky::KyPeer& peer) {
  fChanges.forget(peer);
}

void Memory::stop() {
  fChanges.stop();
}

}  // namespace robot
