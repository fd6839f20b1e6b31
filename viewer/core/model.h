// SPDX-License-Identifier: Apache-2.0
// The one state that the viewer's threads share.
#pragma once

#include <array>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <string>

#include "ky/mutex.h"
#include "viewer/core/display_object.h"
#include "viewer/core/frame_feed.h"
#include "zu/mutex.h"

struct VideoRecorderModel;

// The latest camera frame, the settings that the viewer asks the robot for, the overlay items and
// the recorder's state. The GUI thread, the camera thread and the runtime's call thread meet here
// and nowhere else; each member says which lock guards it. Lock order: fObjectsMutex before
// fImageMutex, and before the mutex of one source's items. A member that is read or written without
// a lock by design is atomic.
class Model {
 public:
  static constexpr int fDefaultResolution = 0;
  static constexpr int fDefaultColorSpace = 9;
  static constexpr int fDefaultFps = 5;
  static constexpr int fDefaultCamera = 0;
  static constexpr int fMaxFps = 30;  // the highest frame rate offered

  // Bytes of the frame buffer: the largest frame, 1280 x 960 pixels of 4 bytes.
  static constexpr int kFrameBytes = 1280 * 960 * 4;

  Model();
  ~Model();
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  // "320 * 240" for 1 and so on; "ERROR" for an index that is none.
  static std::string resolutionToString(int index);
  // The index of exactly this name, or -1.
  static int resolutionFromString(const std::string& name);

  // Begins and ends the watch of a key in the robot's memory. Thread-safe. A key is watched once
  // however often it was added; removing an unwatched key does nothing.
  void addObjectWatch(const std::string& key);
  void removeObjectWatch(const std::string& key);

  // Why the newest fetch brought no picture; empty when it brought one. Thread-safe.
  void setPictureProblem(const std::string& problem);
  std::string pictureProblem() const;

  // The keys are the watched keys.
  std::map<std::string, displayObjectManager> fObjects ZU_GUARDED_BY(fObjectsMutex);
  boost::shared_ptr<Ky::KyMutex> fObjectsMutex ZU_ACQUIRED_BEFORE(fImageMutex);

  // Size of the frame in fImageData, pixels. Changed under fImageMutex.
  std::atomic<int> fWidth;
  std::atomic<int> fHeight;
  // Capture time of the frame, microseconds since the Unix epoch. Not guarded.
  std::atomic<std::int64_t> fTimestamp;

  // What is asked of the robot. Read under fParamMutex; written by the settings without it.
  std::atomic<int> fResolution;
  std::atomic<int> fColorSpace;  // 9 colour (YUV 4:2:2), 0 black and white, 10 YUV 4:4:4
  std::atomic<int> fFps;         // also the polling rate
  std::atomic<std::uint8_t> fCamera;

  // Field of view of the frame in radians: left, top, right, bottom. Not guarded.
  std::array<std::atomic<float>, 4> fAngles;

  boost::shared_ptr<Ky::KyMutexRW> fImageMutex;
  boost::shared_ptr<Ky::KyMutexRW> fParamMutex;

  // fWidth x fHeight pixels in the byte order blue, green, red, alpha, rows packed. Every byte is
  // 150, a grey, before the first frame.
  unsigned char* fImageData ZU_PT_GUARDED_BY(fImageMutex);

  // May be empty: then there is no recorder. GUI thread only.
  boost::shared_ptr<VideoRecorderModel> fVideoRecorder;

  // The same pictures as they came, for views that show them at their full size.
  FrameFeed fFrames;

 private:
  mutable zu::Mutex fProblemMutex;
  std::string fPictureProblem ZU_GUARDED_BY(fProblemMutex);
};
