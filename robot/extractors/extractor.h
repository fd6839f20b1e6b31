// SPDX-License-Identifier: Apache-2.0
// A module that looks for things in the camera's pictures and writes what it finds into the robot's
// memory, for as long as somebody is subscribed.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "ky/module.h"
#include "robot/camera/cameras.h"
#include "robot/extractors/detector.h"
#include "robot/extractors/subscriptions.h"
#include "zu/mutex.h"

namespace robot {

// Looks as often as the most eager subscriber wants, on a thread of its own and of low priority:
// when there is no time, it drops pictures and never slows the camera. Its keys always exist, empty
// while nothing is found or nobody is subscribed, so that reading one never fails.
//
// The methods run on the module's call thread.
class Extractor : public Ky::KyModule {
 public:
  // `name`: of the module; `what`: the things it finds, for its description.
  Extractor(boost::shared_ptr<Ky::KyBroker> broker, std::shared_ptr<Cameras> cameras,
            const std::string& name, const std::string& what, std::unique_ptr<Detector> detector);
  ~Extractor() override;

  void subscribe(const Ky::KyPeer& caller, const std::string& name, int period, float precision);
  void unsubscribe(const Ky::KyPeer& caller, const std::string& name);

  void init() override;
  void stop() override;
  void peerLeft(const Ky::KyPeer& peer) override;

 protected:
  // Call thread.
  bool isSubscribed(const Ky::KyPeer& peer);
  // A peer has no subscription any more, and maybe never had one: for what a kind keeps per peer.
  // Called on the call thread. The default does nothing.
  virtual void subscriberGone(const Ky::KyPeer&) {}

 private:
  using Clock = std::chrono::steady_clock;

  template <class Change>
  void change(Change change);
  void run();
  bool isStopping();
  bool waitForSubscriber();  // false: it is to end
  void watch();              // until nobody is subscribed
  // Returns the period when it is time to look again, nothing when nobody is subscribed.
  std::optional<std::chrono::milliseconds> waitForTurn(std::optional<Clock::time_point> last);
  void look(const CameraReader& reader);
  void write(const std::vector<Finding>& findings);
  void clearKeys();
  void tell(const std::string& trouble);  // once, however often it comes
  void end();

  const std::shared_ptr<Cameras> fCameras;
  const std::unique_ptr<Detector> fDetector;

  zu::Mutex fMutex;
  zu::ConditionVariable fChanged;
  Subscriptions fSubscriptions ZU_GUARDED_BY(fMutex);
  bool fStop ZU_GUARDED_BY(fMutex) = false;

  std::int64_t fSeen = 0;  // time of the last picture; the thread's own
  std::string fTrouble;    // of the last look; the thread's own while it runs
  std::thread fThread;
};

}  // namespace robot
