// SPDX-License-Identifier: Apache-2.0
#include "robot/services/video_device.h"

#include <algorithm>

#include "robot/services/image_record.h"
#include "robot/streaming/encoder_trial.h"

namespace robot {
namespace {

using Ky::KyError;

constexpr std::chrono::milliseconds kFirstFrame{500};
constexpr std::size_t kMaxSubscriptions = 32;  // of one peer
constexpr std::size_t kMaxName = 128;          // bytes

void requireWish(const Wish& wish) {
  requireResolution(wish.format.resolution);
  if (!isColorSpace(wish.format.colorSpace))
    throw KyError("there is no colour space " + std::to_string(wish.format.colorSpace) +
                  "; 0 is grey, 9 YUV 4:2:2, 10 YUV 4:4:4");
  if (!isFrameRate(wish.fps))
    throw KyError("a frame rate of " + std::to_string(wish.fps) + " can't be had; 1 to " +
                  std::to_string(kMaxFps) + " can");
}

bool isPossible(const Wish& wish) {
  return isResolution(wish.format.resolution) && isColorSpace(wish.format.colorSpace) &&
         isFrameRate(wish.fps);
}

bool tryWish(CameraReader* reader, const Wish& wish) {
  if (reader == nullptr || !isPossible(wish)) return false;
  reader->setWish(wish);
  return true;
}

void changeWish(Wish& wish, int id, int value) {
  if (id == kResolution) wish.format.resolution = value;
  if (id == kFrameRate) wish.fps = value;
  if (id == kColorSpace) wish.format.colorSpace = value;
}

bool isOfSubscription(int id) {
  return id == kResolution || id == kFrameRate || id == kColorSpace;
}

}  // namespace

void VideoDevice::requireEncoder(const std::string& name) {
  tryEncoder(name);
}

VideoDevice::VideoDevice(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                         const std::string& encoder)
    : KyModule(std::move(broker), "KyVideoDevice"),
      fCameras(std::move(cameras)),
      fEncoders(std::make_shared<SharedEncoders>(encoder)) {
  setModuleDescription("The robot's cameras.");
  publishPictures();
  publishSettings();
  publishParameters();
}

std::string VideoDevice::subscribe(const Ky::KyPeer& caller, const std::string& name,
                                   int resolution, int colorSpace, int fps) {
  const Wish wish{{resolution, colorSpace}, fps};
  requireWish(wish);
  if (name.size() > kMaxName)
    throw KyError("a subscriber's name may have " + std::to_string(kMaxName) + " bytes");
  if (CameraReader* reader = find(caller, name)) {
    reader->setWish(wish);
    return name;
  }
  if (readersOf(caller).size() >= kMaxSubscriptions)
    throw KyError("there are " + std::to_string(kMaxSubscriptions) +
                  " subscriptions already; unsubscribe first");
  const std::string given = name.empty() ? freeName() : name;
  fReaders[{caller.id, given}] = fCameras->read(wish);
  return given;
}

void VideoDevice::unsubscribe(const Ky::KyPeer& caller, const std::string& name) {
  fStreams.erase({caller.id, name});
  if (fReaders.erase({caller.id, name}) == 0) throw KyError("\"" + name + "\" is not subscribed");
}

Ky::KyValue::Array VideoDevice::getImageRemote(const Ky::KyPeer& caller, const std::string& name) {
  const CameraReader* reader = find(caller, name);
  if (reader == nullptr)
    throw KyError("\"" + name + "\" is not subscribed; call subscribe() first");
  const auto frame = reader->newest(kFirstFrame);
  return imageRecord(*frame, reader->wish().format);
}

void VideoDevice::openPictures(const Ky::KyPeer& caller, const std::string& name, int stream,
                               const std::string& encoding) {
  const Encoding wanted = encodingOf(encoding);
  const auto reader = fReaders.find({caller.id, name});
  if (reader == fReaders.end())
    throw KyError("\"" + name + "\" is not subscribed; call subscribe() first");
  const PictureChoice choice = choiceFor(reader->first, wanted);
  fStreams.erase(reader->first);
  fStreams[reader->first] = std::make_unique<PictureStream>(
      reader->second, getParentBroker()->sendStream(caller, stream), choice, fEncoders);
}

// Who opens a stream anew keeps what the one before found out of the link.
PictureChoice VideoDevice::choiceFor(const Subscriber& subscriber, Encoding encoding) {
  const auto before = fStreams.find(subscriber);
  if (before == fStreams.end()) return PictureChoice(encoding);
  PictureChoice choice = before->second->stop();
  return choice.encoding() == encoding ? choice : PictureChoice(encoding);
}

bool VideoDevice::setFrameRate(const Ky::KyPeer& caller, const std::string& name, int fps) {
  CameraReader* reader = find(caller, name);
  return reader != nullptr && tryWish(reader, {reader->wish().format, fps});
}

bool VideoDevice::setResolution(const Ky::KyPeer& caller, const std::string& name, int resolution) {
  CameraReader* reader = find(caller, name);
  if (reader == nullptr) return false;
  const Wish now = reader->wish();
  return tryWish(reader, {{resolution, now.format.colorSpace}, now.fps});
}

bool VideoDevice::setColorSpace(const Ky::KyPeer& caller, const std::string& name, int colorSpace) {
  CameraReader* reader = find(caller, name);
  if (reader == nullptr) return false;
  const Wish now = reader->wish();
  return tryWish(reader, {{now.format.resolution, colorSpace}, now.fps});
}

bool VideoDevice::setActiveCamera(int camera) {
  if (camera < 0 || camera >= kCameras) return false;
  fCameras->setActive(camera);
  return true;
}

int VideoDevice::getCameraModelID() {
  return fCameras->model();
}

int VideoDevice::getParam(const Ky::KyPeer& caller, int id) {
  return getParamOf(caller, id, fCameras->active());
}

int VideoDevice::getParamOf(const Ky::KyPeer& caller, int id, int index) {
  const Camera& own = camera(index);
  if (id == kActiveCamera) return fCameras->active();
  return isOfSubscription(id) ? wishParameter(caller, id) : own.getParameter(id);
}

void VideoDevice::setParam(const Ky::KyPeer& caller, int id, int value) {
  setParamOf(caller, id, value, fCameras->active());
}

void VideoDevice::setParamOf(const Ky::KyPeer& caller, int id, int value, int index) {
  Camera& own = camera(index);
  if (id == kActiveCamera) {
    if (!setActiveCamera(value))
      throw KyError("there is no camera " + std::to_string(value) + "; 0 and 1 are there");
  } else if (isOfSubscription(id)) {
    setWishParameter(caller, id, value);
  } else {
    own.setParameter(id, value);
  }
}

void VideoDevice::peerLeft(const Ky::KyPeer& peer) {
  const auto isOfPeer = [&](const auto& entry) { return entry.first.first == peer.id; };
  std::erase_if(fStreams, isOfPeer);
  std::erase_if(fReaders, isOfPeer);
}

void VideoDevice::stop() {
  fStreams.clear();
  fReaders.clear();
}

std::string VideoDevice::freeName() const {
  for (int number = 1;; ++number) {
    std::string name = "viewer_" + std::to_string(number);
    const auto taken = [&](const auto& entry) { return entry.first.second == name; };
    if (std::none_of(fReaders.begin(), fReaders.end(), taken)) return name;
  }
}

CameraReader* VideoDevice::find(const Ky::KyPeer& caller, const std::string& name) const {
  const auto found = fReaders.find({caller.id, name});
  return found == fReaders.end() ? nullptr : found->second.get();
}

std::vector<CameraReader*> VideoDevice::readersOf(const Ky::KyPeer& caller) const {
  std::vector<CameraReader*> readers;
  for (const auto& [subscriber, reader] : fReaders)
    if (subscriber.first == caller.id) readers.push_back(reader.get());
  return readers;
}

Camera& VideoDevice::camera(int index) const {
  if (index < 0 || index >= kCameras)
    throw KyError("there is no camera " + std::to_string(index) + "; 0 and 1 are there");
  return fCameras->camera(index);
}

int VideoDevice::wishParameter(const Ky::KyPeer& caller, int id) const {
  const auto readers = readersOf(caller);
  const Wish wish = readers.empty() ? Wish() : readers.front()->wish();
  if (id == kResolution) return wish.format.resolution;
  return id == kFrameRate ? wish.fps : wish.format.colorSpace;
}

void VideoDevice::setWishParameter(const Ky::KyPeer& caller, int id, int value) {
  Wish changed;
  changeWish(changed, id, value);
  requireWish(changed);
  const auto readers = readersOf(caller);
  if (readers.empty())
    throw KyError("parameter " + std::to_string(id) +
                  " belongs to a subscription; call subscribe() first");
  for (CameraReader* reader : readers) {
    Wish wish = reader->wish();
    changeWish(wish, id, value);
    reader->setWish(wish);
  }
}

}  // namespace robot
