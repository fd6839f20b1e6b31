// SPDX-License-Identifier: Apache-2.0
// Whether a robot's picture runs, how fast, and for how long it has not.
#pragma once

#include <QtGlobal>
#include <chrono>
#include <deque>
#include <optional>

namespace Lookout {

enum class PictureState {
  None,        // nothing can be told: there are no pictures, or nobody can see them
  NotPlaying,  // never played yet
  Paused,
  Waiting,  // plays, and the first picture since then is still to come
  Live,
  Stalled  // plays, and nothing new was painted for too long
};

// What a widget says of its picture at one moment.
struct PictureSample {
  using Time = std::chrono::steady_clock::time_point;

  bool playing = false;
  bool visible = true;  // a picture that nobody can see is not painted
  quint64 framesPainted = 0;
  std::optional<Time> lastPainted;
  double frameRateWanted = 0;  // 0: not known
};

struct PictureReading {
  PictureState state = PictureState::None;
  double framesPerSecond = 0;  // new pictures painted; 0 unless live
  // Since the newest picture was painted. By this desktop's own clock: the robot's may be another.
  std::optional<std::chrono::milliseconds> age;
  std::chrono::milliseconds standstill{0};  // while stalled: playing without a new picture
};

// How old the picture may get while it plays: a second, and at low frame rates two and a half times
// the time from one picture to the next.
std::chrono::milliseconds oldestLivePicture(double frameRateWanted);

// Fed with a sample some times a second. Thread-bound.
class PictureMeter {
 public:
  using Time = PictureSample::Time;

  PictureReading update(const PictureSample& sample, Time now);
  // Another widget follows, or none.
  void reset();

 private:
  struct Painted {
    quint64 frames;
    Time time;
  };

  void follow(const PictureSample& sample, Time now);
  void forgetBefore(Time time);
  double rate() const;

  std::deque<Painted> fPainted;  // the newest pictures, as far as the samples met them
  std::optional<PictureSample> fLast;
  Time fLastTime;
  Time fPlayingSince;
  Time fPatientSince;  // no picture could come before
  bool fHasPlayed = false;
};

}  // namespace Lookout
