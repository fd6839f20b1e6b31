// SPDX-License-Identifier: Apache-2.0
// The module "KyVideoRecorder".
#pragma once

#include <memory>
#include <string>

#include "ky/module.h"
#include "robot/recording/recorder.h"

namespace robot {

// The methods run on the module's call thread.
class VideoRecorder : public Ky::KyModule {
 public:
  VideoRecorder(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Recorder> recorder);

  std::string startRecording(const Ky::KyPeer& caller, const std::string& folder,
                             const std::string& fileName);
  Ky::KyValue stopRecording();
  Ky::KyValue getState();
  bool takeOver(const Ky::KyPeer& caller, const std::string& path);

  int getResolution();
  int getFrameRate();
  void setResolution(int resolution);
  void setFrameRate(int fps);

  void peerLeft(const Ky::KyPeer& peer) override { fRecorder->peerLeft(peer); }
  void stop() override { fRecorder->end(); }

 private:
  void publishRecording();
  void publishSettings();

  const std::shared_ptr<Recorder> fRecorder;
};

}  // namespace robot
