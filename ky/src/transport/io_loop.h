// SPDX-License-Identifier: Apache-2.0
// The thread on which a broker's sockets live.
#pragma once

#include <functional>
#include <thread>
#include <vector>
#include <zmq.hpp>

#include "zu/mutex.h"

namespace Ky {

// Runs what is posted, what its sockets receive, and a tick at least every kTick.
class IoLoop {
 public:
  static constexpr std::chrono::milliseconds kTick{100};

  // Called on the loop's thread only.
  class Client {
   public:
    virtual ~Client() = default;
    // The sockets to wait for, and for which events.
    virtual std::vector<zmq::pollitem_t> waitFor() = 0;
    // One of them is ready, or something was posted, or kTick has passed.
    virtual void work() = 0;
  };

  IoLoop();
  ~IoLoop();
  IoLoop(const IoLoop&) = delete;
  IoLoop& operator=(const IoLoop&) = delete;

  void start(Client& client);
  // Runs `task` on the loop's thread, in the order of posting. False once the loop has been
  // stopped. Thread-safe.
  bool post(std::function<void()> task);
  // Runs what was posted before, then ends the thread. Thread-safe; idempotent.
  void stop();

 private:
  void run(Client& client);
  bool runPosted();
  void wake() const;

  int fWakeFd;
  zu::Mutex fMutex;
  std::vector<std::function<void()>> fPosted ZU_GUARDED_BY(fMutex);
  bool fStopping ZU_GUARDED_BY(fMutex) = false;
  zu::Mutex fJoinMutex;
  std::thread fThread ZU_GUARDED_BY(fJoinMutex);
};

}  // namespace Ky
