// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/device_controls.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ky/error.h"
#include "robot/camera/control_mapping.h"
#include "zu/log.h"

namespace robot {
namespace {

// The control of each parameter; the first one that a device has counts.
struct Control {
  int parameter;
  unsigned id;
};
constexpr Control kControls[] = {
    {kBrightness, V4L2_CID_BRIGHTNESS},
    {kContrast, V4L2_CID_CONTRAST},
    {kSaturation, V4L2_CID_SATURATION},
    {kHue, V4L2_CID_HUE},
    {kRedChroma, V4L2_CID_RED_BALANCE},
    {kBlueChroma, V4L2_CID_BLUE_BALANCE},
    {kGain, V4L2_CID_GAIN},
    {kGain, V4L2_CID_ANALOGUE_GAIN},
    {kHorizontalFlip, V4L2_CID_HFLIP},
    {kVerticalFlip, V4L2_CID_VFLIP},
    {kAutoExposition, V4L2_CID_EXPOSURE_AUTO},
    {kAutoWhiteBalance, V4L2_CID_AUTO_WHITE_BALANCE},
    {kAutoGain, V4L2_CID_AUTOGAIN},
    {kExposure, V4L2_CID_EXPOSURE_ABSOLUTE},
    {kExposure, V4L2_CID_EXPOSURE},
    {kExposureCorrection, V4L2_CID_AUTO_EXPOSURE_BIAS},
    {kWhiteBalance, V4L2_CID_WHITE_BALANCE_TEMPERATURE},
};

class OpenDevice {
 public:
  explicit OpenDevice(const std::string& path)
      : fPath(path), fFile(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {
    if (fFile < 0) throw Ky::KyError("\"" + fPath + "\" can't be opened: " + std::strerror(errno));
  }
  ~OpenDevice() { ::close(fFile); }
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  // The control of a parameter; nothing when the device has none.
  std::optional<v4l2_queryctrl> find(int parameter) const {
    for (const Control& control : kControls) {
      v4l2_queryctrl query{};
      query.id = control.id;
      if (control.parameter == parameter && ::ioctl(fFile, VIDIOC_QUERYCTRL, &query) == 0 &&
          (query.flags & V4L2_CTRL_FLAG_DISABLED) == 0 && query.maximum > query.minimum)
        return query;
    }
    return std::nullopt;
  }

  int read(const v4l2_queryctrl& control) const {
    v4l2_control value{control.id, 0};
    require(::ioctl(fFile, VIDIOC_G_CTRL, &value), "read", control);
    return value.value;
  }

  void write(const v4l2_queryctrl& control, int to) const {
    v4l2_control value{control.id, to};
    require(::ioctl(fFile, VIDIOC_S_CTRL, &value), "set", control);
  }

  // Bit n: whether the control's menu has entry n.
  unsigned menuOf(const v4l2_queryctrl& control) const {
    unsigned entries = 0;
    for (int i = std::max(control.minimum, 0); i <= std::min(control.maximum, 31); ++i) {
      v4l2_querymenu entry{};
      entry.id = control.id;
      entry.index = static_cast<unsigned>(i);
      if (::ioctl(fFile, VIDIOC_QUERYMENU, &entry) == 0) entries |= 1U << i;
    }
    return entries;
  }

 private:
  void require(int result, const char* what, const v4l2_queryctrl& control) const {
    if (result == 0) return;
    const std::string why = std::strerror(errno);
    throw Ky::KyError("\"" + fPath + "\" does not let its control \"" +
                      reinterpret_cast<const char*>(control.name) + "\" be " + what + ": " + why);
  }

  const std::string& fPath;
  const int fFile;
};

ControlRange rangeOf(const v4l2_queryctrl& control) {
  return {control.minimum, control.maximum, std::max(control.step, 1),
          std::clamp(control.default_value, control.minimum, control.maximum)};
}

bool write(const OpenDevice& device, const ParameterRange& parameter, int value) {
  const auto control = device.find(parameter.id);
  if (!control) return false;
  // Nobody but an automatic mode moves it at the moment; what it finds is read back later.
  if ((control->flags & V4L2_CTRL_FLAG_INACTIVE) != 0) return true;
  if (parameter.id != kAutoExposition) {
    device.write(*control, toControl(parameter, rangeOf(*control), value));
    return true;
  }
  const int mode = exposureMode(value != 0, device.menuOf(*control));
  if (mode < 0) return false;
  device.write(*control, mode);
  return true;
}

void tryToWrite(const OpenDevice& device, const ParameterRange& parameter, int value) {
  try {
    write(device, parameter, value);
  } catch (const Ky::KyError& error) {
    zu::log::warning("kyrobot", "camera") << error.what();
  }
}

}  // namespace

DeviceControls::DeviceControls(std::string path) : fPath(std::move(path)) {
}

std::optional<int> DeviceControls::get(const ParameterRange& parameter) const {
  const OpenDevice device(fPath);
  const auto control = device.find(parameter.id);
  if (!control) return std::nullopt;
  const int value = device.read(*control);
  if (parameter.id == kAutoExposition) return isAutomaticExposure(value) ? 1 : 0;
  return toParameter(parameter, rangeOf(*control), value);
}

bool DeviceControls::set(const ParameterRange& parameter, int value) {
  if (!write(OpenDevice(fPath), parameter, value)) return false;
  const zu::MutexLock guard(fMutex);
  fWritten[parameter.id] = {parameter, value};
  return true;
}

void DeviceControls::restore() {
  const zu::MutexLock guard(fMutex);
  if (fWritten.empty()) return;
  const OpenDevice device(fPath);
  // Twice: what an automatic mode governs takes a value only once that mode is off.
  for (int round = 0; round < 2; ++round)
    for (const auto& [id, written] : fWritten) tryToWrite(device, written.first, written.second);
}

}  // namespace robot
