// SPDX-License-Identifier: Apache-2.0
#include "lookout/picture_meter.h"

#include <algorithm>

namespace Lookout {
namespace {

using namespace std::chrono_literals;
using std::chrono::duration_cast;
using std::chrono::milliseconds;

constexpr milliseconds kRateWindow = 2s;
constexpr double kPatience = 2.5;  // periods

}  // namespace

milliseconds oldestLivePicture(double frameRateWanted) {
  if (!(frameRateWanted > 0)) return 1s;
  // At most an hour, so that no rate overflows.
  const double periods = std::min(kPatience * 1000 / frameRateWanted, 3.6e6);
  return std::max<milliseconds>(1s, milliseconds(static_cast<milliseconds::rep>(periods)));
}

PictureReading PictureMeter::update(const PictureSample& sample, Time now) {
  follow(sample, now);
  PictureReading reading;
  if (sample.lastPainted) reading.age = duration_cast<milliseconds>(now - *sample.lastPainted);
  if (!sample.playing) {
    const bool played = fHasPlayed || sample.framesPainted > 0;
    reading.state = played ? PictureState::Paused : PictureState::NotPlaying;
    return reading;
  }
  if (!sample.visible) return reading;
  const bool hasNew = sample.lastPainted && *sample.lastPainted >= fPlayingSince;
  const Time since = hasNew ? std::max(*sample.lastPainted, fPatientSince) : fPatientSince;
  if (now - since > oldestLivePicture(sample.frameRateWanted)) {
    reading.state = PictureState::Stalled;
    reading.standstill = duration_cast<milliseconds>(now - since);
    fPainted.clear();
  } else if (hasNew) {
    reading.state = PictureState::Live;
    reading.framesPerSecond = rate();
  } else {
    reading.state = PictureState::Waiting;
  }
  return reading;
}

void PictureMeter::reset() {
  *this = {};
}

void PictureMeter::follow(const PictureSample& sample, Time now) {
  const bool runs = sample.playing && sample.visible;
  const bool ran = fLast && fLast->playing && fLast->visible;
  if (sample.playing && !(fLast && fLast->playing)) {
    fHasPlayed = true;
    // What was painted since the sample before is of this playing, too.
    fPlayingSince = fLast ? fLastTime : now;
  }
  // What came at another rate, or before a break, says nothing of the rate that follows.
  if (!runs || !ran || fLast->frameRateWanted != sample.frameRateWanted) {
    fPainted.clear();
    fPatientSince = now;
  } else if (sample.lastPainted && fLast->framesPainted != sample.framesPainted) {
    fPainted.push_back({sample.framesPainted, *sample.lastPainted});
  }
  forgetBefore(now - std::max(kRateWindow, oldestLivePicture(sample.frameRateWanted)));
  fLast = sample;
  fLastTime = now;
}

void PictureMeter::forgetBefore(Time time) {
  while (fPainted.size() > 2 && fPainted.front().time < time) fPainted.pop_front();
}

double PictureMeter::rate() const {
  if (fPainted.size() < 2 || fPainted.back().time <= fPainted.front().time) return 0;
  const std::chrono::duration<double> elapsed = fPainted.back().time - fPainted.front().time;
  return static_cast<double>(fPainted.back().frames - fPainted.front().frames) / elapsed.count();
}

}  // namespace Lookout
