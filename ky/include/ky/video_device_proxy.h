// SPDX-License-Identifier: Apache-2.0
// The robot's cameras.
#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>

#include "ky/broker.h"
#include "ky/proxy.h"
#include "ky/value.h"

namespace Ky {

// The largest picture a video device may deliver.
constexpr int kMaxImageWidth = 1280;
constexpr int kMaxImageHeight = 960;

// The parameters of a camera, for getParam() and setParam(). A plain enum: the ids
// travel as ints.
enum CameraParameter {
  kBrightness = 0,
  kContrast = 1,
  kSaturation = 2,
  kHue = 3,
  kRedChroma = 4,
  kBlueChroma = 5,
  kGain = 6,
  kHorizontalFlip = 7,
  kVerticalFlip = 8,
  kAutoExposition = 11,
  kAutoWhiteBalance = 12,
  kAutoGain = 13,
  kResolution = 14,  // of a subscription, like the frame rate and the colour space
  kFrameRate = 15,
  kExposure = 17,
  kActiveCamera = 18,  // of the robot
  kColorSpace = 20,
  kExposureCorrection = 21,
  kWhiteBalance = 33,
};

// Bytes that a picture of this size takes in a colour space: 0 (Y), 9 (YUV 4:2:2), 10 (YUV 4:4:4).
// 0 for every other colour space: their layouts are unknown here.
std::size_t imageBytes(int width, int height, int colorSpace);

// Proxy to the module "KyVideoDevice". Thread-safe; every call may throw KyError.
class KyVideoDeviceProxy {
 public:
  // Throws KyError when there is no such module.
  explicit KyVideoDeviceProxy(boost::shared_ptr<KyBroker> broker);

  // Subscribes under `name`, or under a name that the device chooses when it is empty; returns the
  // name. resolution: 0 160x120, 1 320x240, 2 640x480, 3 1280x960. colorSpace: see imageBytes().
  // fps: 1..30.
  std::string subscribe(const std::string& name, int resolution, int colorSpace, int fps);
  void unsubscribe(const std::string& name);

  // The newest image: [width, height, layers, colour space, seconds, microseconds, pixels, camera,
  // left, top, right, bottom angle in radians]. A size that no camera delivers, or fewer pixels
  // than the size and a known colour space need, throw KyError here, so that a reader may trust
  // the size. Where the device offers its pictures as a stream, one is opened with the first call,
  // which then answers at once with the newest that has come, and closed when nobody has called for
  // two seconds.
  KyValue getImageRemote(const std::string& name);

  // False when the device refuses the value.
  bool setFrameRate(const std::string& name, int fps);
  bool setResolution(const std::string& name, int resolution);
  bool setColorSpace(const std::string& name, int colorSpace);
  bool setActiveCamera(int camera);

  // 1 or 2; see docs/robot.md.
  int getCameraModelID();

  // Without a camera: of the active one.
  int getParam(int id);
  int getParam(int id, int camera);
  void setParam(int id, int value);
  void setParam(int id, int value, int camera);

 private:
  class Pictures;
  boost::shared_ptr<KyProxy> fProxy;
  std::shared_ptr<Pictures> fPictures;
};

}  // namespace Ky
