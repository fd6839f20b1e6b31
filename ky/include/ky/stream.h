// SPDX-License-Identifier: Apache-2.0
// Values that go one way, without being asked for: pictures, say.
//
// The receiver makes a stream and tells its id to a module, in a call of the module's own; the
// module sends to the caller under that id. Nothing piles up: a value that could not go out before
// the next one came is left out, and no more is on its way than the link carries.
//
//   // the program                               // the module, in openPictures(caller, stream)
//   auto pictures = broker->receiveStream();     fStream = getParentBroker()->sendStream(caller,
//   device.openPictures(pictures->id());                                               stream);
//   while (auto picture = pictures->next(1s))    ...
//     show(*picture);                            fStream->send(picture);
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ky/value.h"

namespace Ky {

struct OutgoingStream;
struct IncomingStream;

// Destroying it ends the stream. Thread-safe.
class KyStreamSender {
 public:
  // Made by KyBroker::sendStream().
  KyStreamSender(std::shared_ptr<OutgoingStream> stream, std::function<void()> onWaiting,
                 std::function<void()> onEnd);
  ~KyStreamSender();
  KyStreamSender(const KyStreamSender&) = delete;
  KyStreamSender& operator=(const KyStreamSender&) = delete;

  // Returns at once. Takes the place of the value before, where that is still waiting.
  void send(KyValue value);
  // Whether nothing waits: a value that is sent now takes nobody's place.
  bool isFree() const;
  // Whether nothing waits and what was sent last has gone out whole: the link has time.
  bool isIdle() const;
  // Gives up what waits, and what has gone out in part. It counts as lost.
  void abandon();
  // How many values did not arrive for sure: another took their place, or the connection broke.
  std::uint64_t lost() const;
  // How many of these were beyond the limits of a message: sent again, they would be again.
  std::uint64_t refused() const;
  // The receiver wants no more, or is gone. What is sent then goes nowhere.
  bool isClosed() const;
  // What the link to the receiver carries; 0 while it is not known.
  double bytesPerSecond() const;
  // How long a value takes to it and its acknowledgement back, on a free link; 0 while not known.
  std::chrono::duration<double> roundTrip() const;

 private:
  const std::shared_ptr<OutgoingStream> fStream;
  const std::function<void()> fOnWaiting;
  const std::function<void()> fOnEnd;
};

// Destroying it tells the sender that no more is wanted. Thread-safe, but next() is for one thread.
class KyStreamReceiver {
 public:
  struct Item {
    std::int64_t number = 0;  // 1, 2, ...; what is missing was lost
    KyValue value;
    std::chrono::steady_clock::time_point arrived;
  };

  // Made by KyBroker::receiveStream().
  KyStreamReceiver(std::int64_t id, std::shared_ptr<IncomingStream> stream,
                   std::function<void()> onClose);
  ~KyStreamReceiver();
  KyStreamReceiver(const KyStreamReceiver&) = delete;
  KyStreamReceiver& operator=(const KyStreamReceiver&) = delete;

  // What the sender has to be told.
  std::int64_t id() const { return fId; }
  // The oldest value that was not taken yet, of those that are kept; waits for one. Nothing when
  // none came in time, or when the stream has ended and all are taken.
  std::optional<Item> next(std::chrono::milliseconds patience);
  // Why no more will come: the sender ended it, the robot is lost, or nobody asked for the next
  // for as long as was said. Empty while more may.
  std::string ended() const;
  // Says in the user's words what comes ("exact", ...), for KyStatistics::streams. Empty: nothing
  // worth a word.
  void describe(const std::string& text);

 private:
  const std::int64_t fId;
  const std::shared_ptr<IncomingStream> fStream;
  const std::function<void()> fOnClose;
};

}  // namespace Ky
