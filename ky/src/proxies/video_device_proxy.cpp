// SPDX-License-Identifier: Apache-2.0
#include "ky/video_device_proxy.h"

namespace Ky {
namespace {

void requireSide(const KyValue& side, const char* name, int limit) {
  if (!side.isInt()) return;  // the reader will say so
  const std::int64_t pixels = side.asInt64();
  if (pixels < 0 || pixels > limit)
    throw KyError("KyVideoDevice", "getImageRemote",
                  "the image record says a " + std::string(name) + " of " + std::to_string(pixels) +
                      " pixels; 0 to " + std::to_string(limit) + " are possible");
}

// What a reader can't check for itself without knowing every layout; elements of a wrong type are
// left to its own accessors.
void requireUsableRecord(const KyValue& record) {
  if (!record.isArray() || record.size() < 7) return;
  requireSide(record[0], "width", kMaxImageWidth);
  requireSide(record[1], "height", kMaxImageHeight);
  if (!record[0].isInt() || !record[1].isInt() || !record[3].isInt() || !record[6].isBinary())
    return;
  const std::int64_t colorSpace = record[3].asInt64();
  if (colorSpace < 0 || colorSpace > 255) return;
  const std::size_t needed =
      imageBytes(record[0].asInt(), record[1].asInt(), static_cast<int>(colorSpace));
  if (record[6].asBinary().size() < needed)
    throw KyError("KyVideoDevice", "getImageRemote",
                  "the image record holds " + std::to_string(record[6].asBinary().size()) +
                      " bytes of pixels; its size and colour space need " + std::to_string(needed));
}

}  // namespace

std::size_t imageBytes(int width, int height, int colorSpace) {
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  switch (colorSpace) {
    case 0:
      return pixels;
    case 9:
      return pixels * 2;
    case 10:
      return pixels * 3;
    default:
      return 0;
  }
}

KyVideoDeviceProxy::KyVideoDeviceProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyVideoDevice")) {
}

std::string KyVideoDeviceProxy::subscribe(const std::string& name, int resolution, int colorSpace,
                                          int fps) {
  return fProxy->call<std::string>("subscribe", name, resolution, colorSpace, fps);
}

void KyVideoDeviceProxy::unsubscribe(const std::string& name) {
  fProxy->callVoid("unsubscribe", name);
}

KyValue KyVideoDeviceProxy::getImageRemote(const std::string& name) {
  KyValue record = fProxy->call<KyValue>("getImageRemote", name);
  requireUsableRecord(record);
  return record;
}

bool KyVideoDeviceProxy::setFrameRate(const std::string& name, int fps) {
  return fProxy->call<bool>("setFrameRate", name, fps);
}

bool KyVideoDeviceProxy::setResolution(const std::string& name, int resolution) {
  return fProxy->call<bool>("setResolution", name, resolution);
}

bool KyVideoDeviceProxy::setColorSpace(const std::string& name, int colorSpace) {
  return fProxy->call<bool>("setColorSpace", name, colorSpace);
}

bool KyVideoDeviceProxy::setActiveCamera(int camera) {
  return fProxy->call<bool>("setActiveCamera", camera);
}

int KyVideoDeviceProxy::getCameraModelID() {
  return fProxy->call<int>("getCameraModelID");
}

int KyVideoDeviceProxy::getParam(int id) {
  return fProxy->call<int>("getParam", id);
}

int KyVideoDeviceProxy::getParam(int id, int camera) {
  return fProxy->call<int>("getParam", id, camera);
}

void KyVideoDeviceProxy::setParam(int id, int value) {
  fProxy->callVoid("setParam", id, value);
}

void KyVideoDeviceProxy::setParam(int id, int value, int camera) {
  fProxy->callVoid("setParam", id, value, camera);
}

}  // namespace Ky
