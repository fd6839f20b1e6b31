// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/extractor.h"

#include <sys/resource.h>

#include <algorithm>

#include "ky/memory_proxy.h"
#include "zu/log.h"

namespace robot {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFastest{1000 / kMaxFps};
constexpr milliseconds kFirstFrame{500};
constexpr int kBackground = 10;  // nice value

// The camera makes pictures a little more often than they are looked at; their smallest size costs
// it least.
Wish wishFor(milliseconds period) {
  const auto fps = 1000 / std::max(period, kFastest).count() + 1;
  return {{0, kGrey}, static_cast<int>(std::clamp<long long>(fps, 1, kMaxFps))};
}

}  // namespace

Extractor::Extractor(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
                     const std::string& name, const std::string& what,
                     std::unique_ptr<Detector> detector)
    : KyModule(std::move(broker), name),
      fCameras(std::move(cameras)),
      fDetector(std::move(detector)) {
  std::string keys;
  for (const std::string& key : fDetector->keys())
    keys += (keys.empty() ? "\"" : ", \"") + key + "\"";
  setModuleDescription("Looks for " + what + " in the camera's pictures and writes them under " +
                       keys + " in KyMemory, while somebody is subscribed.");

  functionName(
      "subscribe", getName(),
      "Begins to look. Whoever subscribes again under the same name is still one subscriber, "
      "with the shorter of the two periods.");
  addParam("name", "of the subscriber");
  addParam("period", "milliseconds between two looks; 0: as often as possible");
  addParam("precision", "0 to 1; this robot always looks as carefully as it can");
  bindMethod(&Extractor::subscribe);

  functionName(
      "unsubscribe", getName(),
      "Ends what subscribe() began, however often it was called. A name that is not subscribed "
      "is no error.");
  addParam("name", "of the subscriber");
  bindMethod(&Extractor::unsubscribe);
}

Extractor::~Extractor() {
  end();
}

void Extractor::subscribe(const Ky::KyPeer& caller, const std::string& name, int period, float) {
  change([&]() ZU_REQUIRES(fMutex) { fSubscriptions.add(caller, name, milliseconds(period)); });
}

void Extractor::unsubscribe(const Ky::KyPeer& caller, const std::string& name) {
  change([&]() ZU_REQUIRES(fMutex) { fSubscriptions.remove(caller, name); });
  if (!isSubscribed(caller)) subscriberGone(caller);
}

bool Extractor::isSubscribed(const Ky::KyPeer& peer) {
  const zu::MutexLock guard(fMutex);
  return fSubscriptions.has(peer);
}

void Extractor::init() {
  clearKeys();
  fThread = std::thread(&Extractor::run, this);
}

void Extractor::stop() {
  end();
}

void Extractor::peerLeft(const Ky::KyPeer& peer) {
  change([&]() ZU_REQUIRES(fMutex) { fSubscriptions.removeAllOf(peer); });
  subscriberGone(peer);
}

template <class Change>
void Extractor::change(Change change) {
  const zu::MutexLock guard(fMutex);
  change();
  fChanged.notifyAll();
}

void Extractor::end() {
  change([&]() ZU_REQUIRES(fMutex) { fStop = true; });
  if (fThread.joinable()) fThread.join();
}

void Extractor::run() {
  setpriority(PRIO_PROCESS, 0, kBackground);  // on Linux of this thread alone
  while (waitForSubscriber()) {
    watch();
    clearKeys();
  }
}

bool Extractor::isStopping() {
  const zu::MutexLock guard(fMutex);
  return fStop;
}

bool Extractor::waitForSubscriber() {
  const zu::MutexLock guard(fMutex);
  while (!fStop && !fSubscriptions.period()) fChanged.wait(fMutex);
  return !fStop;
}

void Extractor::watch() {
  const auto reader = fCameras->read(Wish());
  std::optional<Clock::time_point> last;
  while (const auto period = waitForTurn(last)) {
    last = Clock::now();
    if (const Wish wish = wishFor(*period); wish != reader->wish()) reader->setWish(wish);
    look(*reader);
  }
}

std::optional<milliseconds> Extractor::waitForTurn(std::optional<Clock::time_point> last) {
  const zu::MutexLock guard(fMutex);
  for (;;) {
    const auto period = fSubscriptions.period();
    if (fStop || !period) return std::nullopt;
    if (!last) return period;
    const auto due = *last + std::max(*period, kFastest);
    if (Clock::now() >= due) return period;
    fChanged.waitUntil(fMutex, due);  // or until the period changes
  }
}

void Extractor::look(const CameraReader& reader) {
  try {
    const auto frame = reader.newest(kFirstFrame);
    if (frame->time() == fSeen) return;
    write(fDetector->detect(*frame));
    fSeen = frame->time();
    fTrouble.clear();
  } catch (const std::exception& error) {
    tell(error.what());
  }
}

void Extractor::write(const std::vector<Finding>& findings) {
  try {
    Ky::KyMemoryProxy memory(getParentBroker());
    for (const Finding& finding : findings) memory.insertData(finding.key, finding.value);
  } catch (const Ky::KyError& error) {
    throw Ky::KyError(std::string("KyMemory doesn't take what was found: ") + error.what());
  }
}

void Extractor::clearKeys() {
  std::vector<Finding> nothing;
  for (const std::string& key : fDetector->keys()) nothing.push_back({key, Ky::KyValue::Array{}});
  try {
    write(nothing);
  } catch (const Ky::KyError& error) {
    if (!isStopping()) tell(error.what());  // when all stops, the memory may have gone first
  }
}

void Extractor::tell(const std::string& trouble) {
  if (trouble != fTrouble) zu::log::warning("kyrobot", getName()) << trouble;
  fTrouble = trouble;
}

}  // namespace robot
