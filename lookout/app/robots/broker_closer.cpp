// SPDX-License-Identifier: Apache-2.0
#include "robots/broker_closer.h"

namespace Lookout {

void BrokerCloser::close(boost::shared_ptr<Ky::KyBroker> broker) {
  fTasks.remove_if([](const Task& task) { return task.done->load(); });
  auto done = std::make_shared<std::atomic<bool>>(false);
  fTasks.push_back({done, std::jthread([broker = std::move(broker), done]() mutable {
                      broker->shutdown();
                      broker.reset();
                      done->store(true);
                    })});
}

}  // namespace Lookout
