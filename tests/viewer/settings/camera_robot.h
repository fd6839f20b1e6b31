// SPDX-License-Identifier: Apache-2.0
// A robot whose camera keeps its parameters, and the viewer's module on it.
#pragma once

#include <map>
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
    device->answer("getParam", [this](const Ky::KyValue::Array& arguments) {
      const std::lock_guard guard(fMutex);
      const int id = arguments.at(0).asInt();
      if (fUnreadable.count(id) != 0) throw Ky::KyError("no parameter " + std::to_string(id));
      return Ky::KyValue(fParameters[id]);
    });
    device->answer("setParam", [this](const Ky::KyValue::Array& arguments) {
      const std::lock_guard guard(fMutex);
      const int id = arguments.at(0).asInt();
      if (fRefused.count(id) == 0) fParameters[id] = arguments.at(1).asInt();
      return Ky::KyValue();
    });
  }

  void set(int id, int value) {
    const std::lock_guard guard(fMutex);
    fParameters[id] = value;
  }
  int get(int id) {
    const std::lock_guard guard(fMutex);
    return fParameters[id];
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
    const std::lock_guard guard(fMutex);
    fUnreadable.insert(id);
  }
  // From now on writing it changes nothing.
  void makeRefused(int id) {
    const std::lock_guard guard(fMutex);
    fRefused.insert(id);
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
  static Lines camera(const Lines& calls) {
    const std::string prefix = "KyVideoDevice.";
    Lines result;
    for (const std::string& call : calls)
      if (call.rfind(prefix, 0) == 0) result.push_back(call.substr(prefix.size()));
    return result;
  }

  std::mutex fMutex;
  std::map<int, int> fParameters;  // guarded by fMutex, like the following
  std::set<int> fUnreadable;
  std::set<int> fRefused;
};
