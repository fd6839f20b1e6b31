// SPDX-License-Identifier: Apache-2.0
#include "ky/video_device_proxy.h"

#include <map>
#include <utility>

#include "proxies/picture_receiver.h"
#include "zu/mutex.h"

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

WantedPicture wantedBy(int parameter, int value) {
  WantedPicture wanted;
  if (parameter == kResolution) wanted.resolution = value;
  if (parameter == kColorSpace) wanted.colorSpace = value;
  if (parameter == kActiveCamera) wanted.camera = value;
  return wanted;
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

// The streams of the subscriptions, and what was asked for them. Thread-safe.
class KyVideoDeviceProxy::Pictures {
 public:
  explicit Pictures(boost::shared_ptr<KyBroker> broker) : fBroker(std::move(broker)) {}

  bool areOffered() const {
    return fBroker->offers("KyVideoDevice", "openPictures") &&
           fBroker->connection() == KyConnection::Connected;
  }

  KyValue newest(const std::string& name) {
    const auto receiver = receiverOf(name);
    const zu::MutexLock guard(receiver->mutex);
    return receiver->pictures.newest([&] { return wanted(name); });
  }

  void end(const std::string& name) {
    const zu::MutexLock guard(fMutex);
    fReceivers.erase(name);
    fWanted.erase(name);
  }

  // Of one subscription; of all where the name is empty.
  void want(const std::string& name, const WantedPicture& change) {
    const zu::MutexLock guard(fMutex);
    if (!name.empty()) fWanted[name];
    for (auto& [of, wanted] : fWanted) {
      if (!name.empty() && of != name) continue;
      if (change.resolution) wanted.resolution = change.resolution;
      if (change.colorSpace) wanted.colorSpace = change.colorSpace;
      if (change.camera) wanted.camera = change.camera;
      wanted.until = std::chrono::steady_clock::now() + kChange;
    }
  }

 private:
  // The robot may not do what was wanted: then its picture counts all the same.
  static constexpr std::chrono::milliseconds kChange{1000};

  struct Receiver {
    Receiver(boost::shared_ptr<KyBroker> broker, const std::string& name)
        : pictures(std::move(broker), name) {}
    zu::Mutex mutex;
    PictureReceiver pictures ZU_GUARDED_BY(mutex);
  };

  std::shared_ptr<Receiver> receiverOf(const std::string& name) {
    const zu::MutexLock guard(fMutex);
    auto& receiver = fReceivers[name];
    if (!receiver) receiver = std::make_shared<Receiver>(fBroker, name);
    return receiver;
  }

  WantedPicture wanted(const std::string& name) {
    const zu::MutexLock guard(fMutex);
    return fWanted[name];
  }

  const boost::shared_ptr<KyBroker> fBroker;
  zu::Mutex fMutex;
  std::map<std::string, std::shared_ptr<Receiver>> fReceivers ZU_GUARDED_BY(fMutex);
  std::map<std::string, WantedPicture> fWanted ZU_GUARDED_BY(fMutex);
};

KyVideoDeviceProxy::KyVideoDeviceProxy(boost::shared_ptr<KyBroker> broker)
    : fProxy(broker->getProxy("KyVideoDevice")), fPictures(std::make_shared<Pictures>(broker)) {
}

std::string KyVideoDeviceProxy::subscribe(const std::string& name, int resolution, int colorSpace,
                                          int fps) {
  const auto given = fProxy->call<std::string>("subscribe", name, resolution, colorSpace, fps);
  fPictures->want(given, {resolution, colorSpace, {}, {}});
  return given;
}

void KyVideoDeviceProxy::unsubscribe(const std::string& name) {
  fPictures->end(name);
  fProxy->callVoid("unsubscribe", name);
}

KyValue KyVideoDeviceProxy::getImageRemote(const std::string& name) {
  KyValue record = fPictures->areOffered() ? fPictures->newest(name)
                                           : fProxy->call<KyValue>("getImageRemote", name);
  requireUsableRecord(record);
  return record;
}

bool KyVideoDeviceProxy::setFrameRate(const std::string& name, int fps) {
  return fProxy->call<bool>("setFrameRate", name, fps);
}

bool KyVideoDeviceProxy::setResolution(const std::string& name, int resolution) {
  const bool done = fProxy->call<bool>("setResolution", name, resolution);
  if (done) fPictures->want(name, {resolution, {}, {}, {}});
  return done;
}

bool KyVideoDeviceProxy::setColorSpace(const std::string& name, int colorSpace) {
  const bool done = fProxy->call<bool>("setColorSpace", name, colorSpace);
  if (done) fPictures->want(name, {{}, colorSpace, {}, {}});
  return done;
}

bool KyVideoDeviceProxy::setActiveCamera(int camera) {
  const bool done = fProxy->call<bool>("setActiveCamera", camera);
  if (done) fPictures->want("", {{}, {}, camera, {}});
  return done;
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
  fPictures->want("", wantedBy(id, value));
}

void KyVideoDeviceProxy::setParam(int id, int value, int camera) {
  fProxy->callVoid("setParam", id, value, camera);
  fPictures->want("", wantedBy(id, value));
}

}  // namespace Ky
