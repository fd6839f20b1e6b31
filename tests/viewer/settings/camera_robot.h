// SPDX-License-Identifier: Apache-2.0
// A robot whose camera keeps its parameters, and the viewer's module on it.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "support/viewer_on_robot.h"

using Lines = std::vector<std::string>;

// Thread-bound but for the camera, which answers on the robot's call thread.
class CameraRobot : public ViewerOnRobot {
 public:
  explicit CameraRobot(int cameraModel = 1, TestRobot::Offers offers = TestRobot::Offers::Nothing)
      : ViewerOnRobot(Camera::Present, offers) {
    device->answer("getCameraModelID", cameraModel);
    device->answer("getParam", [of = fParameters](const Ky::KyValue::Array& arguments) {
      const std::lock_guard guard(of->mutex);
      const int id = arguments.at(0).asInt();
      if (of->unreadable.contains(id)) throw Ky::KyError("no parameter " + std::to_string(id));
      return Ky::KyValue(of->values[id]);
    });
    device->answer("setParam", [of = fParameters](const Ky::KyValue::Array& arguments) {
      const std::lock_guard guard(of->mutex);
      const int id = arguments.at(0).asInt();
      if (!of->refused.contains(id)) of->values[id] = arguments.at(1).asInt();
      return Ky::KyValue();
    });
  }

  void set(int id, int value) {
    const std::lock_guard guard(fParameters->mutex);
    fParameters->values[id] = value;
  }
  int get(int id) {
    const std::lock_guard guard(fParameters->mutex);
    return fParameters->values[id];
  }
  // From now on reading anything, or writing anything, fails.
  void breakReads() {
    device->answer("getParam", [](const Ky::KyValue::Array&) -> Ky::KyValue {
      throw Ky::KyError("not to be read");
    });
  }
  void breakWrites() {
    for (const char* method : {"setParam", "setFrameRate", "setResolution", "setColorSpace"})
      device->answer(method, [](const Ky::KyValue::Array&) -> Ky::KyValue {
        throw Ky::KyError("not to be written");
      });
  }
  // From now on reading it fails.
  void makeUnreadable(int id) {
    const std::lock_guard guard(fParameters->mutex);
    fParameters->unreadable.insert(id);
  }
  // From now on writing it changes nothing.
  void makeRefused(int id) {
    const std::lock_guard guard(fParameters->mutex);
    fParameters->refused.insert(id);
  }

  // The calls to the camera since the last time, without its name.
  Lines takeCameraCalls() { return camera(robot.takeCalls()); }
  // Those of them that change something.
  Lines takeWrites() {
    Lines writes;
    for (const std::string& call : takeCameraCalls())
      if (call.rfind("set", 0) == 0) writes.push_back(call);
    return writes;
  }

 private:
  struct Parameters {
    std::mutex mutex;
    std::map<int, int> values;  // guarded by mutex, like the following
    std::set<int> unreadable;
    std::set<int> refused;
  };

  static Lines camera(const Lines& calls) {
    const std::string prefix = "KyVideoDevice.";
    Lines result;
    for (const std::string& call : calls)
      if (call.rfind(prefix, 0) == 0) result.push_back(call.substr(prefix.size()));
    return result;
  }

  // The robot may still be asked for them while the test ends.
  const std::shared_ptr<Parameters> fParameters = std::make_shared<Parameters>();
};
