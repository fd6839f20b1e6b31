// SPDX-License-Identifier: Apache-2.0
// What changes under some keys of the robot's memory, as it changes.
//
//   const auto changes = memory.changes({"BallDetected", "FaceDetected"});
//   while (true)
//     if (const auto news = changes->next(1s))
//       for (const auto& [key, value] : *news) show(key, value);
#pragma once

#include <boost/shared_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ky/broker.h"
#include "ky/stream.h"
#include "ky/value.h"

namespace Ky {

// Made by KyMemoryProxy::changes(). However slow link and reader are, the last state of every key
// arrives, and what was between is left out. Thread-bound.
class KyChanges {
 public:
  // Keys and their newest values. A value of nothing: the key was removed.
  using News = std::vector<std::pair<std::string, KyValue>>;

  static bool areOffered(const KyBroker& broker);
  KyChanges(boost::shared_ptr<KyBroker> broker, std::vector<std::string> keys);

  // What has changed since the call before; the first time all keys that exist with their values,
  // which may be none. Nothing when nothing has changed in time. A silent robot is waited for.
  // Throws KyError that says why when no more will come: the robot is lost, say.
  std::optional<News> next(std::chrono::milliseconds patience);

 private:
  void open();
  News newsOf(const KyStreamReceiver::Item& item);

  const boost::shared_ptr<KyBroker> fBroker;
  const std::vector<std::string> fKeys;
  std::unique_ptr<KyStreamReceiver> fStream;
  std::int64_t fNumber = 0;      // of the last item
  std::set<std::string> fKnown;  // the keys that exist, as far as was told
};

}  // namespace Ky
