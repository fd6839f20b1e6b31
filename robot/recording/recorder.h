// SPDX-License-Identifier: Apache-2.0
// The robot's one recorder, which several modules share.
#pragma once

#include <memory>
#include <string>

#include "ky/peer.h"
#include "ky/value.h"
#include "robot/recording/recording.h"
#include "zu/mutex.h"

namespace robot {

// One film at a time, for everybody. Whoever is connected may stop what another one has started.
//
// A film goes on when the program that began it leaves or is lost: somebody stops it, or begins
// another one in its place, or it ends by itself. One that has ended by itself waits to be asked
// for with stop() until the next one begins. Whoever takes it over counts as having begun it.
// Thread-safe.
class Recorder {
 public:
  struct Film {
    int frames = 0;
    std::string path;

    Ky::KyValue toValue() const { return Ky::KyValue::array({frames, path}); }
  };
  struct State {
    bool isRecording = false;
    Film film;            // the newest that stop() has not told of
    std::string trouble;  // why it ended by itself
  };

  Recorder(std::shared_ptr<Cameras> cameras, HomeFolder home);

  // Returns the path. Throws KyError: a film of somebody who is still there is being recorded, the
  // camera has no picture, the file can't be had.
  std::string start(const Ky::KyPeer& caller, const std::string& folder, const std::string& name);
  // The film at `path` is the caller's from now on: nobody else's start() makes it end. False when
  // it is not the one that stop() would tell of.
  bool takeOver(const Ky::KyPeer& caller, const std::string& path);
  // Throws KyError when nothing has been recorded since the last time.
  Film stop();
  // The robot stops: completes the film.
  void end();
  void peerLeft(const Ky::KyPeer& peer);

  State state() const;
  // Of films that begin from now on. setSettings() throws KyError for what is out of range.
  FilmSettings settings() const;
  void setSettings(const FilmSettings& settings);

 private:
  void makeWay() ZU_REQUIRES(fMutex);

  const std::shared_ptr<Cameras> fCameras;
  const HomeFolder fHome;

  mutable zu::Mutex fMutex;
  FilmSettings fSettings ZU_GUARDED_BY(fMutex);
  std::unique_ptr<Recording> fRecording ZU_GUARDED_BY(fMutex);
  Ky::KyPeer fOwner ZU_GUARDED_BY(fMutex);
  bool fIsAbandoned ZU_GUARDED_BY(fMutex) = false;
};

}  // namespace robot
