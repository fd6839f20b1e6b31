// SPDX-License-Identifier: Apache-2.0
// A robot on a real socket with a module that takes its time.
#pragma once

#include <QString>
#include <memory>
#include <semaphore>

#include "ky/module.h"

// Its module "Slow" answers wait() when answer() is called, once for each. Thread-bound.
class SlowRobot {
 public:
  SlowRobot() { start(); }
  ~SlowRobot() { stop(); }

  const Ky::KyAddress& address() const { return fAddress; }
  QString name() const { return QString::fromStdString(fAddress.toString()); }
  void answer() { fSlow->mayAnswer.release(); }
  // It forgets everybody.
  void restart() {
    stop();
    start();
  }
  // Whether anybody spoke to it since it was started.
  bool wasSpokenTo() const { return fBroker->statistics().bytesIn > 0; }

 private:
  class Slow : public Ky::KyModule {
   public:
    explicit Slow(boost::shared_ptr<Ky::KyBroker> broker) : KyModule(std::move(broker), "Slow") {
      functionName("wait", getName(), "Answers when it may.");
      setReturn("answered", "false when nobody let it");
      bindMethod(&Slow::wait);
    }
    bool wait() { return mayAnswer.try_acquire_for(std::chrono::seconds(10)); }

    std::counting_semaphore<> mayAnswer{0};
  };

  void start() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = fAddress;
    fBroker = Ky::KyBroker::create(std::move(options));
    fAddress = fBroker->address();
    fSlow = Ky::KyModule::createModule<Slow>(fBroker);
  }
  void stop() {
    fSlow->mayAnswer.release(100);
    fSlow.reset();
    fBroker->shutdown();
    fBroker.reset();
  }

  Ky::KyAddress fAddress{"127.0.0.1", 0};
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<Slow> fSlow;
};
