// SPDX-License-Identifier: Apache-2.0
// What the video device publishes.
#include "robot/services/video_device.h"

namespace robot {

void VideoDevice::publishPictures() {
  functionName("subscribe", getName(),
               "Begins to deliver pictures to a subscriber, or changes what it gets. Subscribers "
               "of one name in different programs are different subscribers.");
  addParam("name", "of the subscriber; empty: the device chooses one");
  addParam("resolution", "0 160x120, 1 320x240, 2 640x480, 3 1280x960");
  addParam("colorSpace", "0 grey, 9 YUV 4:2:2, 10 YUV 4:4:4");
  addParam("fps", "pictures a second, 1 to 30");
  setReturn("name", "under which the subscriber is known");
  bindMethod(&VideoDevice::subscribe);

  functionName("unsubscribe", getName(), "Ends a subscription.");
  addParam("name", "of the subscriber");
  bindMethod(&VideoDevice::unsubscribe);

  functionName("getImageRemote", getName(), "The newest picture of the active camera.");
  addParam("name", "of the subscriber");
  setReturn("image",
            "[width, height, layers, colour space, seconds, microseconds, pixels, camera, left, "
            "top, right, bottom angle]");
  bindMethod(&VideoDevice::getImageRemote);

  functionName(
      "openPictures", getName(),
      "Sends a subscriber its pictures as a stream, in place of one that it has: [\"exact\", "
      "image] each, [\"h264\", image with a packet in place of the pixels, number, is it a key "
      "frame, bit rate], or [\"error\", text] while there is none.");
  addParam("name", "of the subscriber");
  addParam("stream", "the caller's id of it");
  addParam("encoding", "automatic, exact or saving");
  bindMethod(&VideoDevice::openPictures);
  offer("openPictures");
}

void VideoDevice::publishSettings() {
  functionName("setFrameRate", getName(), "Changes a subscriber's frame rate.");
  addParam("name", "of the subscriber");
  addParam("fps", "pictures a second, 1 to 30");
  setReturn("done", "false for an impossible value or an unknown subscriber");
  bindMethod(&VideoDevice::setFrameRate);

  functionName("setResolution", getName(), "Changes a subscriber's resolution.");
  addParam("name", "of the subscriber");
  addParam("resolution", "0 160x120, 1 320x240, 2 640x480, 3 1280x960");
  setReturn("done", "false for an impossible value or an unknown subscriber");
  bindMethod(&VideoDevice::setResolution);

  functionName("setColorSpace", getName(), "Changes a subscriber's colour space.");
  addParam("name", "of the subscriber");
  addParam("colorSpace", "0 grey, 9 YUV 4:2:2, 10 YUV 4:4:4");
  setReturn("done", "false for an impossible value or an unknown subscriber");
  bindMethod(&VideoDevice::setColorSpace);

  functionName("setActiveCamera", getName(), "Chooses the camera that everybody sees.");
  addParam("camera", "0 or 1");
  setReturn("done", "false when there is no such camera");
  bindMethod(&VideoDevice::setActiveCamera);

  functionName("getCameraModelID", getName(), "The model of the cameras.");
  setReturn("model", "1 or 2");
  bindMethod(&VideoDevice::getCameraModelID);
}

void VideoDevice::publishParameters() {
  functionName("getParam", getName(), "A parameter of the active camera.");
  addParam("id", "of the parameter");
  setReturn("value", "of now");
  bindMethod(&VideoDevice::getParam);

  functionName("getParam", getName(), "A parameter of a camera.");
  addParam("id", "of the parameter");
  addParam("camera", "0 or 1");
  setReturn("value", "of now");
  bindMethod(&VideoDevice::getParamOf);

  functionName("setParam", getName(), "Changes a parameter of the active camera.");
  addParam("id", "of the parameter");
  addParam("value", "within the parameter's range");
  bindMethod(&VideoDevice::setParam);

  functionName("setParam", getName(), "Changes a parameter of a camera.");
  addParam("id", "of the parameter");
  addParam("value", "within the parameter's range");
  addParam("camera", "0 or 1");
  bindMethod(&VideoDevice::setParamOf);
}

}  // namespace robot
