#include "robot/camera/generated_source.h"

#include "zu/os.h"

namespace robot {

GeneratedSource::GeneratedSource(int camera) : fScene(camera) {
}

SourcePicture GeneratedSource::next() {
  const std::int64_t now = zu::os::nowMicroseconds();
  return {fScene.render(now), now};
}

}  // namespace robot
