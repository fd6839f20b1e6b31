// SPDX-License-Identifier: Apache-2.0
// The pictures of one subscription, as they come in a stream.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "ky/broker.h"
#include "ky/value.h"

namespace Ky {

// What a subscriber has just asked for; nothing where that is not known.
struct WantedPicture {
  std::optional<int> resolution;
  std::optional<int> colorSpace;
  std::optional<int> camera;
  // Others may ask for something else later, so that it is not expected for ever.
  std::chrono::steady_clock::time_point until;
};

// Thread-bound.
class PictureReceiver {
 public:
  // Asks nobody yet. `name`: of the subscription.
  PictureReceiver(boost::shared_ptr<KyBroker> broker, std::string name);

  // The newest image record that has come: at once, but for the first one, and the first that is as
  // wanted. It is not checked. Throws KyError where the robot says why there is none, or none comes
  // in the time of a call.
  KyValue newest(const WantedPicture& wanted);

 private:
  void open();
  void take(const KyValue& item);

  const boost::shared_ptr<KyBroker> fBroker;
  const std::string fName;
  std::unique_ptr<KyStreamReceiver> fStream;
  KyValue fRecord;     // nothing until the first
  std::string fError;  // why there is none
  std::chrono::steady_clock::time_point fArrived;
};

}  // namespace Ky
