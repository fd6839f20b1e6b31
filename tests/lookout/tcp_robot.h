// SPDX-License-Identifier: Apache-2.0
// A robot on a real socket, to be stopped and started again at the same address.
#pragma once

#include <QString>
#include <string>

#include "ky/broker.h"

// Thread-bound.
class TcpRobot {
 public:
  // With "0.0.0.0" it counts as beyond loopback, and is reached over it; it has no keys.
  explicit TcpRobot(const std::string& host = "127.0.0.1") : fAddress{host, 0} { start(); }
  ~TcpRobot() { stop(); }

  void stop() {
    if (fBroker) fBroker->shutdown();
    fBroker.reset();
  }

  void start() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = fAddress;
    options.insecure = true;
    fBroker = Ky::KyBroker::create(std::move(options));
    fAddress = fBroker->address();
  }

  const boost::shared_ptr<Ky::KyBroker>& broker() const { return fBroker; }
  const Ky::KyAddress& address() const { return fAddress; }
  QString name() const { return QString::fromStdString(fAddress.toString()); }

 private:
  Ky::KyAddress fAddress;
  boost::shared_ptr<Ky::KyBroker> fBroker;
};
