// SPDX-License-Identifier: Apache-2.0
// What can be said of a device's controls without one.
#include "robot/camera/device_controls.h"

#include <gtest/gtest.h>

#include <fstream>
#include <mutex>

#include "in_process_robot.h"
#include "robot/camera/cameras.h"
#include "robot/camera/open_source.h"
#include "support/wait.h"
#include "test_folder.h"

namespace robot {
namespace {

using namespace std::chrono_literals;

TEST(DeviceControls, SayThatTheirDeviceIsGone) {
  DeviceControls controls("/dev/video-that-is-not");
  const ParameterRange brightness = CameraParameters(1).range(kBrightness);
  const std::string text = "\"/dev/video-that-is-not\" can't be opened: No such file or directory";
  EXPECT_EQ(errorText([&] { controls.get(brightness); }), text);
  EXPECT_EQ(errorText([&] { controls.set(brightness, 1); }), text);
  controls.restore();  // nothing was written: nothing to do
}

TEST(DeviceControls, LeaveToOthersWhatTheDeviceHasNoControlFor) {
  const TestFolder folder;
  std::ofstream(folder / "no-camera") << "a file";
  DeviceControls controls(folder / "no-camera");
  for (const ParameterRange& range : parametersOf(1)) {
    EXPECT_EQ(controls.get(range), std::nullopt) << range.name;
    EXPECT_FALSE(controls.set(range, range.minimum)) << range.name;
  }
}

// Shows one colour, and can do brightness by itself, in steps of ten.
class SourceWithBrightness : public CameraSource, public SourceControls {
 public:
  std::string name() const override { return "plain"; }
  void open() override {}
  SourcePicture next() override {
    const std::lock_guard guard(fMutex);
    return {cv::Mat(120, 160, CV_8UC3, cv::Scalar::all(fBrightness)), 1};
  }
  std::chrono::microseconds period(int fps) const override { return periodForReaders(fps); }
  SourceControls* controls() override { return this; }

  std::optional<int> get(const ParameterRange& parameter) const override {
    if (parameter.id != kBrightness) return std::nullopt;
    const std::lock_guard guard(fMutex);
    return fBrightness;
  }
  bool set(const ParameterRange& parameter, int value) override {
    if (parameter.id != kBrightness) return false;
    if (value > 200) throw Ky::KyError("too bright for me");
    const std::lock_guard guard(fMutex);
    fBrightness = value / 10 * 10;
    return true;
  }

 private:
  mutable std::mutex fMutex;
  int fBrightness = 60;  // guarded by fMutex
};

TEST(CameraWithControls, DoesWhatItCanAndTheRestIsArithmetic) {
  const auto cameras = std::make_shared<Cameras>(std::array<std::unique_ptr<CameraSource>, 2>{
      std::make_unique<SourceWithBrightness>(), openSource("generated", 1)});
  Camera& camera = cameras->camera(0);
  const auto reader = cameras->read({{0, kGrey}, 30});
  const auto level = [&] { return reader->newest(20s)->picture().at<cv::Vec3b>(0, 0)[1]; };
  EXPECT_EQ(camera.getParameter(kBrightness), 60);
  EXPECT_EQ(level(), 60) << "once, not twice";
  camera.setParameter(kBrightness, 99);
  EXPECT_EQ(camera.getParameter(kBrightness), 90) << "what is in force";
  EXPECT_TRUE(waitUntil([&] { return level() == 90; }));
  camera.setParameter(kExposure, 510);
  EXPECT_EQ(camera.getParameter(kExposure), 510);
  EXPECT_TRUE(waitUntil([&] { return level() == 180; }));
  EXPECT_EQ(errorText([&] { camera.setParameter(kBrightness, 201); }), "too bright for me");
  EXPECT_EQ(errorText([&] { camera.setParameter(kBrightness, 256); }),
            "parameter 0 (brightness) can't be 256; it goes from 0 to 255");
}

}  // namespace
}  // namespace robot
