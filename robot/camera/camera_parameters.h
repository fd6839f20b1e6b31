// SPDX-License-Identifier: Apache-2.0
// The parameters of one camera: which there are, what they may be, what they are now.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ky/video_device_proxy.h"
#include "robot/camera/picture_controls.h"

namespace robot {

using enum Ky::CameraParameter;

struct ParameterRange {
  int id;
  const char* name;
  int minimum;
  int maximum;
  int initial;
};

// The parameters that a camera of this model keeps for itself: all but those of a subscription and
// of the robot.
std::vector<ParameterRange> parametersOf(int model);

// Thread-bound.
class CameraParameters {
 public:
  // `model`: 1 or 2.
  explicit CameraParameters(int model);

  int model() const { return fModel; }
  bool has(int id) const { return fParameters.count(id) != 0; }

  // These throw KyError for a parameter that this model lacks and for one that there is not;
  // check() and set() also for a value out of range.
  const ParameterRange& range(int id) const;
  void check(int id, int value) const;
  int get(int id) const;
  void set(int id, int value);

  // For the automatic modes, which move in smaller steps than a reader sees. The nearest value in
  // range; the parameter exists.
  void move(int id, double value);
  double position(int id) const { return fParameters.at(id).position; }
  // As get(), but 0 for what this model lacks.
  bool isOn(int id) const { return has(id) && get(id) != 0; }

  // What the values of now do to a picture.
  PictureControls controls() const;

 private:
  struct Parameter {
    ParameterRange range;
    double position;
  };

  int fModel;
  std::map<int, Parameter> fParameters;
};

}  // namespace robot
