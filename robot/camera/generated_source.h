// SPDX-License-Identifier: Apache-2.0
// A made-up scene: always there, always the same at the same time.
#pragma once

#include <cstdint>
#include <optional>

#include "robot/camera/generated_scene.h"
#include "robot/camera/source.h"

namespace robot {

class GeneratedSource : public CameraSource {
 public:
  // "generated", or "generated:SECONDS" with a moment in seconds since the Unix epoch at which the
  // scene stands still, while the pictures' times go on. Throws KyError for any other text.
  GeneratedSource(const std::string& text, int camera);

  // Whether the text means a scene, if perhaps one that can't be had.
  static bool isMeantBy(const std::string& text);

  const GeneratedScene& scene() const { return fScene; }

  std::string name() const override { return fName; }
  void open() override {}
  SourcePicture next() override;
  std::chrono::microseconds period(int fps) const override { return periodForReaders(fps); }

 private:
  std::string fName;
  std::optional<std::int64_t> fMoment;  // microseconds
  GeneratedScene fScene;
  cv::Mat fStill;  // the scene of the moment, once it was wanted
};

}  // namespace robot
