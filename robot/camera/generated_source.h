// A made-up scene: always there, always the same at the same time.
#pragma once

#include "robot/camera/generated_scene.h"
#include "robot/camera/source.h"

namespace robot {

class GeneratedSource : public CameraSource {
 public:
  explicit GeneratedSource(int camera);

  const GeneratedScene& scene() const { return fScene; }

  std::string name() const override { return "generated"; }
  void open() override {}
  SourcePicture next() override;
  std::chrono::microseconds period(int fps) const override { return periodForReaders(fps); }

 private:
  GeneratedScene fScene;
};

}  // namespace robot
