// SPDX-License-Identifier: Apache-2.0
// The module "KyVisionToolbox": photos and films for older programs.
#pragma once

#include <memory>
#include <string>

#include "ky/module.h"
#include "robot/recording/recorder.h"

namespace robot {

// Chooses the folder itself, and has the recorder in common with KyVideoRecorder. The methods run
// on the module's call thread.
class VisionToolbox : public Ky::KyModule {
 public:
  VisionToolbox(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                HomeFolder home, std::shared_ptr<Recorder> recorder);

  std::string takePicture();
  std::string startVideoRecord(const Ky::KyPeer& caller, const std::string& name);
  Ky::KyValue stopVideoRecord();

  void peerLeft(const Ky::KyPeer& peer) override { fRecorder->peerLeft(peer); }
  void stop() override { fRecorder->end(); }

 private:
  const std::shared_ptr<Cameras> fCameras;
  const HomeFolder fHome;
  const std::shared_ptr<Recorder> fRecorder;
};

}  // namespace robot
