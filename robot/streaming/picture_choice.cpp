// SPDX-License-Identifier: Apache-2.0
#include "robot/streaming/picture_choice.h"

#include <algorithm>

#include "ky/error.h"

namespace robot {
namespace {

using Span = std::chrono::duration<double>;

// How long a picture may be under way, at least.
constexpr Span kInTime{0.15};
// The same before anything came back: it may be a long way, or a computer with much to do.
constexpr Span kInTimeUnknown{0.5};
constexpr int kRoundTrips = 3;
// A round trip that is said to be longer is one behind a queue.
constexpr Span kMostRoundTrip{0.3};
// How many of the due pictures may find the link busy, in how long.
constexpr double kBusyShare = 0.15;
constexpr Span kCounted{1};
// Over so short a way, whatever is late is late because this computer is busy.
constexpr Span kNear{0.002};
constexpr Span kFirstProbe{5};
constexpr Span kLastProbe{300};
// A picture that would take longer than so many pictures' time is not worth a try.
constexpr double kHopeless = 20;
// Who has been exact for so long again has a link that carries it.
constexpr Span kProven{30};

Span inTime(const LinkState& link) {
  return std::max(link.bytesPerSecond > 0 ? kInTime : kInTimeUnknown,
                  kRoundTrips * std::min<Span>(link.roundTrip, kMostRoundTrip));
}

// How long the link takes for a picture, in pictures' times; 0 while that is not known.
double loadOf(const DuePicture& picture, const LinkState& link) {
  if (link.bytesPerSecond <= 0) return 0;
  return static_cast<double>(picture.bytes) / link.bytesPerSecond / picture.period.count();
}

bool isAmple(const DuePicture& picture, const LinkState& link) {
  return link.roundTrip > Span::zero() && link.roundTrip < kNear && link.bytesPerSecond > 0 &&
         loadOf(picture, link) < 0.5;
}

}  // namespace

Encoding encodingOf(const std::string& name) {
  if (name == "automatic") return Encoding::Automatic;
  if (name == "exact") return Encoding::Exact;
  if (name == "saving") return Encoding::Saving;
  throw Ky::KyError("pictures can't be sent as \"" + name +
                    "\"; they can as \"automatic\", \"exact\" and \"saving\"");
}

PictureChoice::Turn PictureChoice::due(const DuePicture& picture, const LinkState& link, Time now) {
  fPicture = picture;
  if (fEncoding == Encoding::Exact) return Turn::Exact;
  if (fEncoding == Encoding::Saving) return dueEncoded(link, now);
  switch (fMode) {
    case Mode::Exact:
      return dueExact(link, now);
    case Mode::Encoded:
      return dueEncoded(link, now);
    case Mode::Probing:
      break;
  }
  return Turn::Nothing;
}

bool PictureChoice::givesUp(const LinkState& link, Time now) {
  if (!fSentAt) return false;
  if (fMode == Mode::Probing) return probe(link, now);
  if (link.isIdle) fSentAt.reset();
  if (!isTooSlow(link, now) || isAmple(fPicture, link)) return false;
  fail(now);
  encode(link, now);
  return true;
}

void PictureChoice::goOn() {
  fSentAt.reset();
  fCountedFrom.reset();
  if (fMode == Mode::Probing) fMode = Mode::Encoded;
}

int PictureChoice::most() const {
  return fEncoding == Encoding::Saving ? savingBitRate(fPicture.resolution)
                                       : mostBitRate(fPicture.resolution);
}

PictureChoice::Turn PictureChoice::dueExact(const LinkState& link, Time now) {
  if (!fCountedFrom) {
    fCountedFrom = now;
    fDue = fBusy = 0;
  }
  ++fDue;
  if (!link.isIdle) ++fBusy;
  if (link.isIdle || !fSentAt) fSentAt = now;
  return Turn::Exact;
}

bool PictureChoice::isTooSlow(const LinkState& link, Time now) {
  if (fSentAt && now - *fSentAt > inTime(link)) return true;
  if (!fCountedFrom || now - *fCountedFrom < kCounted) return false;
  fCountedFrom.reset();
  return fBusy > kBusyShare * fDue;
}

PictureChoice::Turn PictureChoice::dueEncoded(const LinkState& link, Time now) {
  fBitRate.due(link, most(), now);
  if (!link.isIdle) {
    fQuietSince = now;
    return Turn::Nothing;
  }
  if (fEncoding == Encoding::Saving || !isTimeToProbe(link, now)) return Turn::Encoded;
  fMode = Mode::Probing;
  fSentAt = now;
  return Turn::Exact;
}

bool PictureChoice::isTimeToProbe(const LinkState& link, Time now) const {
  return now - fQuietSince >= fProbeAfter && loadOf(fPicture, link) <= kHopeless;
}

// The picture that was sent to see whether the link carries it.
bool PictureChoice::probe(const LinkState& link, Time now) {
  const Span took = now - *fSentAt;
  if (link.isIdle && took <= std::min(fPicture.period / 2, inTime(link))) {
    fMode = Mode::Exact;
    fExactSince = now;
    goOn();
    return false;
  }
  if (!link.isIdle && took <= fPicture.period) return false;
  fExactSince = now;
  fail(now);
  goOn();
  return !link.isIdle;
}

// The next try to be exact comes later than this one did, unless it was the first for long.
void PictureChoice::fail(Time now) {
  if (fExactSince)
    fProbeAfter =
        now - *fExactSince < kProven ? std::min(2 * fProbeAfter, kLastProbe) : kFirstProbe;
  fExactSince.reset();
  fQuietSince = now;
}

void PictureChoice::encode(const LinkState& link, Time now) {
  fMode = Mode::Encoded;
  fQuietSince = now;
  // What would carry this picture in time, but did not, has changed.
  fBitRate.begin(loadOf(fPicture, link) < 1 ? LinkState{} : link, most());
  goOn();
}

}  // namespace robot
