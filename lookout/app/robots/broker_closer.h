// SPDX-License-Identifier: Apache-2.0
// Ends brokers without waiting for them.
#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <list>
#include <memory>
#include <thread>

#include "ky/broker.h"

namespace Lookout {

// A broker that is still looking up its robot's name can't end before the answer, which may take
// many seconds. For brokers without modules only, since those belong to the GUI thread.
// Thread-bound.
class BrokerCloser {
 public:
  // Waits for all of them.
  ~BrokerCloser() = default;

  // Returns at once.
  void close(boost::shared_ptr<Ky::KyBroker> broker);

 private:
  struct Task {
    std::shared_ptr<std::atomic<bool>> done;
    std::jthread thread;
  };
  std::list<Task> fTasks;
};

}  // namespace Lookout
