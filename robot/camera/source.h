// SPDX-License-Identifier: Apache-2.0
// Where a camera's pictures come from.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <optional>
#include <string>

namespace robot {

// A picture as its source made it. The pixels are not changed any more.
struct SourcePicture {
  cv::Mat picture;        // 8-bit BGR of any size
  std::int64_t time = 0;  // of capture, microseconds since the Unix epoch
};

struct ParameterRange;

// What a source can do with a camera's parameters before it takes a picture. Thread-safe. The calls
// throw KyError when the source is gone or refuses.
class SourceControls {
 public:
  virtual ~SourceControls() = default;

  // The value that is in force, within the parameter's range; nothing when the source can't do this
  // parameter.
  virtual std::optional<int> get(const ParameterRange& parameter) const = 0;
  // False when the source can't do this parameter. `value` is in range.
  virtual bool set(const ParameterRange& parameter, int value) = 0;
};

// Thread-bound: it may be made on one thread and used on another.
class CameraSource {
 public:
  virtual ~CameraSource() = default;

  // As given on the command line.
  virtual std::string name() const = 0;
  // Makes it ready; also tried again after next() failed. Throws KyError that says what is wrong.
  virtual void open() = 0;
  // The next picture. Waits for no longer than a second. Throws KyError when there is none: the
  // source has failed and needs open().
  virtual SourcePicture next() = 0;
  // Time from one picture to the next when the fastest reader wants `fps` of them a second; zero
  // when next() itself waits.
  virtual std::chrono::microseconds period(int fps) const = 0;
  // Nobody is watching: lets go of what costs. next() may follow at any time.
  virtual void rest() {}
  // Null when its pictures come as they are. Lives as long as the source.
  virtual SourceControls* controls() { return nullptr; }
};

// A source that takes any number of pictures is asked for twice as many as the fastest reader
// wants, at most 60, so that a reader who polls at that rate never meets the same one twice.
std::chrono::microseconds periodForReaders(int fps);

}  // namespace robot
