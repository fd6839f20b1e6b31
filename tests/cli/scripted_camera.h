// SPDX-License-Identifier: Apache-2.0
// A robot on a real socket whose camera shows what the test says.
#pragma once

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include "ky/module.h"
#include "robot/camera/pixels.h"
#include "support/wait.h"
#include "zu/mutex.h"

constexpr int kWidth = 320;
constexpr int kHeight = 240;

// Smooth, so that all the ways in which colours are halved and encoded show the same; each is
// another one.
inline cv::Mat view(int number) {
  cv::Mat small(3, 4, CV_8UC3);
  cv::RNG(static_cast<std::uint64_t>(number) + 1).fill(small, cv::RNG::UNIFORM, 30, 220);
  cv::Mat large;
  cv::resize(small, large, {kWidth, kHeight}, 0, 0, cv::INTER_CUBIC);
  return large;
}

// `time`: in microseconds.
inline Ky::KyValue record(Ky::KyBinary pixels, std::int64_t time, int width = kWidth,
                          int height = kHeight) {
  return Ky::KyValue::array({width, height, 2, 9, time / 1000000, time % 1000000, std::move(pixels),
                             0, 0.4, 0.3, -0.4, -0.3});
}

inline Ky::KyValue recordOf(int number, std::int64_t time) {
  return record(robot::pixelsOf(view(number), 9), time);
}

// Thread-safe, but for what is set before somebody asks.
class ScriptedCamera : public Ky::KyModule {
 public:
  enum class Offers { Nothing, Streams };
  ScriptedCamera(boost::shared_ptr<Ky::KyBroker> broker, Offers offers)
      : KyModule(std::move(broker), "KyVideoDevice") {
    if (offers == Offers::Streams) offer("openPictures");
  }

  Ky::KyValue invoke(const Ky::KyPeer& caller, const std::string& method,
                     const Ky::KyValue::Array& arguments) override {
    const zu::MutexLock guard(fMutex);
    fCalls.push_back(method);
    for (const Ky::KyValue& argument : arguments)
      if (!argument.isArray()) fCalls.back() += " " + argument.toString();
    if (method == "subscribe") return "ky_1";
    if (method == "getImageRemote") return answer(static_cast<int>(fCalls.size()));
    if (method == "openPictures") {
      fSender = getParentBroker()->sendStream(caller, arguments.at(1).asInt64());
      fEncoding = arguments.size() > 2 ? arguments[2].asString() : "";
      ++fOpened;
    }
    return {};
  }
  void stop() override {
    const zu::MutexLock guard(fMutex);
    fSender.reset();
  }

  // What getImageRemote() answers; `number` grows.
  std::function<Ky::KyValue(int number)> answer;

  // One after the other: each has arrived when the next one is sent.
  void send(Ky::KyValue item) {
    ASSERT_TRUE(waitUntil([&] { return isIdle(); }));
    const zu::MutexLock guard(fMutex);
    fSender->send(std::move(item));
  }
  bool isIdle() const {
    const zu::MutexLock guard(fMutex);
    return fSender && fSender->isIdle();
  }
  int opened() const {
    const zu::MutexLock guard(fMutex);
    return fOpened;
  }
  // Of the stream.
  std::string encoding() const {
    const zu::MutexLock guard(fMutex);
    return fEncoding;
  }
  bool wasCalled(const std::string& call) const {
    const zu::MutexLock guard(fMutex);
    return std::any_of(fCalls.begin(), fCalls.end(),
                       [&](const std::string& each) { return each.find(call) == 0; });
  }

 private:
  mutable zu::Mutex fMutex;
  std::unique_ptr<Ky::KyStreamSender> fSender ZU_GUARDED_BY(fMutex);
  std::string fEncoding ZU_GUARDED_BY(fMutex);
  int fOpened ZU_GUARDED_BY(fMutex) = 0;
  std::vector<std::string> fCalls ZU_GUARDED_BY(fMutex);
};

struct CameraRobot {
  explicit CameraRobot(ScriptedCamera::Offers offers) : broker(listening()) {
    camera = Ky::KyModule::createModule<ScriptedCamera>(broker, offers);
  }
  ~CameraRobot() { stop(); }

  void stop() { broker->shutdown(); }
  std::string address() const { return broker->address().toString(); }

  static boost::shared_ptr<Ky::KyBroker> listening() {
    Ky::KyBrokerOptions options;
    options.name = "robot";
    options.listen = Ky::KyAddress{"127.0.0.1", 0};
    return Ky::KyBroker::create(options);
  }

  boost::shared_ptr<Ky::KyBroker> broker;
  boost::shared_ptr<ScriptedCamera> camera;
};
