// SPDX-License-Identifier: Apache-2.0
#include "cli/pictures/picture_feed.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "cli/commands.h"
#include "ky/stream.h"

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr const char* kDevice = "KyVideoDevice";
constexpr std::size_t kDepth = 30;  // a second's: so long may the disk take
constexpr std::size_t kMostBytes = 64u << 20;

class StreamedFeed : public PictureFeed {
 public:
  StreamedFeed(boost::shared_ptr<Ky::KyBroker> broker, std::string subscription,
               std::string encoding)
      : fBroker(std::move(broker)),
        fSubscription(std::move(subscription)),
        fEncoding(std::move(encoding)) {
    open();
  }

  std::optional<FedPicture> next(milliseconds patience) override {
    if (fReady) return std::exchange(fReady, std::nullopt);
    const auto item = fStream->next(patience);
    if (item) return take(item->value);
    if (const std::string why = fStream->ended(); !why.empty())
      throw Ky::KyError(kBrokerName, "", "no more pictures come: " + why);
    return {};
  }

 private:
  void open() {
    fStream.reset();
    auto stream = fBroker->receiveStream(kDepth, {}, kMostBytes);
    fBroker->call(kDevice, "openPictures", {fSubscription, stream->id(), fEncoding});
    fStream = std::move(stream);
    fChain = {};
    fHeld.reset();
  }

  std::optional<FedPicture> take(const Ky::KyValue& item) {
    if (!item.isArray() || item.size() < 2 || !item[0].isString())
      throw Ky::KyError(kDevice, "", "the robot sent something else in place of a picture");
    const std::string& kind = item[0].asString();
    if (kind == "error") fProblem = item[1].asString();
    if (kind == "exact") return takeExact(item);
    if (kind == "h264") return takeEncoded(item);
    return {};
  }

  // A single one among those that are encoded, with which the robot tries the link, can't be put
  // between them; it is left out.
  std::optional<FedPicture> takeExact(const Ky::KyValue& item) {
    FedPicture fed{pictureOf(item[1])};
    requirePixels(fed.picture);
    fProblem.clear();
    if (fChain.state != Chain::Followed) return fed;
    if (!fHeld) {
      fHeld = std::move(fed);
      return {};
    }
    fChain.state = Chain::Left;
    fReady = std::move(fed);
    return std::exchange(fHeld, std::nullopt);
  }

  // ["h264", record, number, whether it is a key frame, bit rate]
  std::optional<FedPicture> takeEncoded(const Ky::KyValue& item) {
    if (item.size() < 4)
      throw Ky::KyError(kDevice, "", "the robot sent something else in place of a picture");
    const std::int64_t number = item[2].asInt64();
    const bool isKey = item[3].asBool();
    fHeld.reset();
    if (!isKey && !goesOn(number)) return {};
    fChain = {Chain::Followed, number};
    fProblem.clear();
    return FedPicture{pictureOf(item[1]), true, isKey};
  }

  // One that comes twice or late harms nothing. Of what is missing the robot does not know: when it
  // is asked anew it begins anew, with a key frame.
  bool goesOn(std::int64_t number) {
    if (fChain.state == Chain::Unknown || number <= fChain.newest) return false;
    if (fChain.state == Chain::Followed && number == fChain.newest + 1) return true;
    open();
    return false;
  }

  // What is encoded holds together: each picture tells what has changed since the one before.
  struct Chain {
    enum State { Unknown, Followed, Left } state = Unknown;
    std::int64_t newest = 0;
  };

  const boost::shared_ptr<Ky::KyBroker> fBroker;
  const std::string fSubscription;
  const std::string fEncoding;
  std::unique_ptr<Ky::KyStreamReceiver> fStream;
  Chain fChain;
  std::optional<FedPicture> fHeld;   // until the next one says whether the chain ends
  std::optional<FedPicture> fReady;  // to be given before others
};

class PolledFeed : public PictureFeed {
 public:
  PolledFeed(boost::shared_ptr<Ky::KyBroker> broker, CameraSubscription& camera, int fps)
      : fBroker(std::move(broker)), fCamera(camera), fPeriod(1000000 / fps) {}

  std::optional<FedPicture> next(milliseconds patience) override {
    const auto end = Clock::now() + patience;
    std::this_thread::sleep_until(std::min(fNext, end));
    if (end < fNext) return {};
    fNext = std::max(fNext + fPeriod, Clock::now());
    try {
      FedPicture fed{pictureOf(fCamera.newest())};
      requirePixels(fed.picture);
      fProblem.clear();
      const bool isNew = fed.picture.time != fNewest;
      fNewest = fed.picture.time;
      return isNew ? std::optional(fed) : std::nullopt;
    } catch (const Ky::KyError& error) {
      if (fBroker->connection() == Ky::KyConnection::Lost)
        throw Ky::KyError(kBrokerName, "", std::string("no more pictures come: ") + error.what());
      fProblem = error.what();
      return {};
    }
  }

 private:
  const boost::shared_ptr<Ky::KyBroker> fBroker;
  CameraSubscription& fCamera;
  const std::chrono::microseconds fPeriod;
  Clock::time_point fNext;
  std::int64_t fNewest = -1;  // its time
};

}  // namespace

std::unique_ptr<PictureFeed> openFeed(const RobotConnection& robot, CameraSubscription& camera,
                                      const CameraOptions& options) {
  if (robot->offers(kDevice, "openPictures"))
    return std::make_unique<StreamedFeed>(robot.broker(), camera.name(), options.pictures);
  return std::make_unique<PolledFeed>(robot.broker(), camera, options.fps);
}

}  // namespace cli
