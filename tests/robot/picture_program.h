// SPDX-License-Identifier: Apache-2.0
// A program on a desktop that watches a robot's camera.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "ky/video_device_proxy.h"

// Thread-safe, as what it holds is.
struct PictureProgram {
  // `pictures`: as the user wishes them; empty: nothing was said.
  explicit PictureProgram(int port, const std::string& pictures = "") {
    Ky::KyBrokerOptions options;
    options.name = "desktop";
    options.parent = Ky::KyAddress{"127.0.0.1", port};
    options.patience.reconnectMin = std::chrono::milliseconds(50);
    broker = Ky::KyBroker::create(options);
    if (!pictures.empty()) broker->setPreference("KyVideoDevice.pictures", pictures);
    device = std::make_unique<Ky::KyVideoDeviceProxy>(broker);
  }
  ~PictureProgram() {
    device.reset();
    broker->shutdown();
  }
  PictureProgram(const PictureProgram&) = delete;
  PictureProgram& operator=(const PictureProgram&) = delete;

  boost::shared_ptr<Ky::KyBroker> broker;
  std::unique_ptr<Ky::KyVideoDeviceProxy> device;
};
