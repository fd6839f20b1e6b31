// SPDX-License-Identifier: Apache-2.0
// The module "KyVideoDevice": the robot's cameras for everybody in its runtime.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "ky/module.h"
#include "robot/camera/cameras.h"
#include "robot/services/picture_stream.h"

namespace robot {

// A subscriber is known by peer and name, so that two desktops of one name each have a picture of
// their own. The methods run on the module's call thread.
class VideoDevice : public Ky::KyModule {
 public:
  // Throws KyError that says what to do when pictures can't be encoded with it.
  static void requireEncoder(const std::string& name);
  // `encoder`: libavcodec's name of the one for pictures as H.264.
  VideoDevice(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
              const std::string& encoder = EncoderSettings().name);

  std::string subscribe(const Ky::KyPeer& caller, const std::string& name, int resolution,
                        int colorSpace, int fps);
  void unsubscribe(const Ky::KyPeer& caller, const std::string& name);
  Ky::KyValue::Array getImageRemote(const Ky::KyPeer& caller, const std::string& name);
  void openPictures(const Ky::KyPeer& caller, const std::string& name, int stream,
                    const std::string& encoding);

  bool setFrameRate(const Ky::KyPeer& caller, const std::string& name, int fps);
  bool setResolution(const Ky::KyPeer& caller, const std::string& name, int resolution);
  bool setColorSpace(const Ky::KyPeer& caller, const std::string& name, int colorSpace);

  bool setActiveCamera(int camera);
  int getCameraModelID();
  int getParam(const Ky::KyPeer& caller, int id);
  int getParamOf(const Ky::KyPeer& caller, int id, int camera);
  void setParam(const Ky::KyPeer& caller, int id, int value);
  void setParamOf(const Ky::KyPeer& caller, int id, int value, int camera);

  void peerLeft(const Ky::KyPeer& peer) override;
  void stop() override;

 private:
  using Subscriber = std::pair<std::string, std::string>;  // peer id, name

  void publishPictures();
  void publishSettings();
  void publishParameters();

  PictureChoice choiceFor(const Subscriber& subscriber, Encoding encoding);
  std::string freeName() const;
  CameraReader* find(const Ky::KyPeer& caller, const std::string& name) const;
  std::vector<CameraReader*> readersOf(const Ky::KyPeer& caller) const;
  Camera& camera(int index) const;
  int wishParameter(const Ky::KyPeer& caller, int id) const;
  void setWishParameter(const Ky::KyPeer& caller, int id, int value);

  const std::shared_ptr<Cameras> fCameras;
  std::map<Subscriber, std::shared_ptr<CameraReader>> fReaders;
  const std::shared_ptr<SharedEncoders> fEncoders;
  std::map<Subscriber, std::unique_ptr<PictureStream>> fStreams;
};

}  // namespace robot
