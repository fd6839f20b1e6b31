// SPDX-License-Identifier: Apache-2.0
// A film that is being recorded.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "robot/camera/cameras.h"
#include "robot/recording/film_file.h"
#include "robot/recording/film_pacing.h"
#include "zu/mutex.h"

namespace robot {

struct FilmSettings {
  int resolution = 1;  // see image_format.h
  int fps = 15;        // 1..kMaxFps
};

// Records the active camera on a thread of its own from construction on, until it is stopped, the
// disk is full or it is kLongest old. Whichever it is, the film is complete then. Thread-safe.
class Recording {
 public:
  static constexpr std::chrono::hours kLongest{2};

  // In a new file of the home, see HomeFolder::create(). Throws KyError when the camera has no
  // picture, or the file can't be had; none is left then.
  Recording(Cameras& cameras, const HomeFolder& home, const FilmSettings& settings,
            const std::string& folder, const std::string& name);
  // Stops it.
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  // Completes the film.
  void stop();

  bool isRunning() const { return fRunning; }
  int frames() const { return fFrames; }
  const std::string& path() const { return fFile.path(); }
  // Why it ended by itself; empty when it did not.
  std::string trouble() const;

 private:
  void run(const std::stop_token& stop);
  void record(const std::stop_token& stop);
  void take(const std::shared_ptr<const Frame>& frame);
  void write(const Frame& frame);

  const FilmSettings fSettings;
  std::unique_ptr<CameraReader> fReader;
  // The thread's own, once it runs:
  std::shared_ptr<const Frame> fSeen;   // the newest picture
  std::shared_ptr<const Frame> fShown;  // the newest that is in the film
  FilmFile fFile;
  FilmPacing fPacing;

  std::atomic<int> fFrames = 0;
  std::atomic<bool> fRunning = true;
  mutable zu::Mutex fMutex;
  std::string fTrouble ZU_GUARDED_BY(fMutex);
  zu::Mutex fStopMutex;  // one at a time waits for the thread
  std::jthread fThread ZU_GUARDED_BY(fStopMutex);
};

}  // namespace robot
