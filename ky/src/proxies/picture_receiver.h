// SPDX-License-Identifier: Apache-2.0
// The pictures of one subscription, as they come in a stream.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ky/broker.h"
#include "ky/value.h"
#include "proxies/picture_chain.h"

namespace Ky {

// What a subscriber has just asked for; nothing where that is not known.
struct WantedPicture {
  std::optional<int> resolution;
  std::optional<int> colorSpace;
  std::optional<int> camera;
  // Others may ask for something else later, so that it is not expected for ever.
  std::chrono::steady_clock::time_point until;
};

// How they come is the broker's preference "KyVideoDevice.pictures": "automatic" (where nothing was
// set), "exact" or "saving"; it may change at any time. Thread-bound.
class PictureReceiver {
 public:
  // Asks nobody yet. `name`: of the subscription.
  PictureReceiver(boost::shared_ptr<KyBroker> broker, std::string name);

  // The newest image record that has come: at once, but for the first one, and the first that is as
  // wanted, which may become something else meanwhile. Where two came since the last call it is the
  // older one, so that who asks as often as they come gets them all; but not for long. It is not
  // checked. Throws KyError where the robot says why there is none, what comes can't be decoded, or
  // none comes in the time of a call.
  KyValue newest(const std::function<WantedPicture()>& wanted);

 private:
  using Clock = std::chrono::steady_clock;

  std::string encoding() const;
  void openWhereNeeded();
  void open();
  void openAfterBreak();
  void fetch();
  bool waitForOne(Clock::time_point end);
  void take(const KyValue& item);
  void takePicture(KyValue record, std::int64_t bitRate);
  void choose();
  [[noreturn]] void throwNothingCame();

  const boost::shared_ptr<KyBroker> fBroker;
  const std::string fName;
  std::unique_ptr<KyStreamReceiver> fStream;
  std::string fEncoding;  // of the stream
  PictureChain fChain;
  int fBrokenStreams = 0;                  // since the last picture
  std::optional<std::int64_t> fDescribed;  // bits a second; 0: exact
  std::deque<KyValue> fWaiting;            // came since
  int fWaited = 0;                         // calls in a row after which one was left
  KyValue fRecord;                         // nothing until the first
  std::string fError;                      // why there is none
  Clock::time_point fArrived;
};

}  // namespace Ky
