// SPDX-License-Identifier: Apache-2.0
// Whether a subscriber gets pictures as they are or as H.264, and how good.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "robot/streaming/bit_rate.h"
#include "robot/streaming/link_state.h"

namespace robot {

enum class Encoding {
  Automatic,  // exact as long as the link carries that
  Exact,      // always
  Saving      // always H.264, and little of it
};

// "automatic", "exact" or "saving"; throws KyError for others.
Encoding encodingOf(const std::string& name);

// A picture whose turn it is.
struct DuePicture {
  int resolution = 0;
  std::size_t bytes = 0;                    // as it is
  std::chrono::duration<double> period{0};  // to the next
};

// Automatic begins exact. A picture that has not gone out in time, or too many that found the link
// still busy, end that. While H.264 goes well a picture is sent as it is from time to time, less
// and less often, to see whether the link carries them by now.
//
// Thread-bound; brings no clock of its own.
class PictureChoice {
 public:
  using Time = std::chrono::steady_clock::time_point;
  enum class Turn { Exact, Encoded, Nothing };

  explicit PictureChoice(Encoding encoding) : fEncoding(encoding) {}

  Encoding encoding() const { return fEncoding; }
  // What to do with a picture. Nothing: the link is busy, it is not to be encoded.
  Turn due(const DuePicture& picture, const LinkState& link, Time now);
  // To be asked often while isWatching(): whether the picture that is under way as it is is to be
  // given up. H.264 goes on, or begins, with the next one.
  bool givesUp(const LinkState& link, Time now);
  bool isWatching() const { return fSentAt.has_value(); }
  // What was under way is not: another stream goes on where this one was.
  void goOn();

  // Whether a picture as it is is but a try.
  bool isEncoding() const { return fMode != Mode::Exact; }
  // For Turn::Encoded.
  int bitRate() const { return fBitRate.bitsPerSecond(); }

 private:
  using Span = std::chrono::duration<double>;
  enum class Mode { Exact, Encoded, Probing };

  int most() const;
  Turn dueExact(const LinkState& link, Time now);
  Turn dueEncoded(const LinkState& link, Time now);
  bool isTimeToProbe(const LinkState& link, Time now) const;
  bool isTooSlow(const LinkState& link, Time now);
  bool probe(const LinkState& link, Time now);
  void fail(Time now);
  void encode(const LinkState& link, Time now);

  Encoding fEncoding;
  Mode fMode = Mode::Exact;
  DuePicture fPicture;          // the last
  std::optional<Time> fSentAt;  // since when an exact picture is under way
  // Of the last second or so.
  std::optional<Time> fCountedFrom;
  int fDue = 0;
  int fBusy = 0;

  BitRate fBitRate;
  Time fQuietSince;  // nothing was held up
  Span fProbeAfter{5};
  std::optional<Time> fExactSince;  // since a probe went well
};

}  // namespace robot
