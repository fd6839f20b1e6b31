#include "robot/camera/picture_controls.h"

namespace robot {

cv::Mat PictureControls::apply(const cv::Mat& bgr) const {
  cv::Mat result = bgr;
  if (brightness != kNeutralBrightness || contrast != kNeutralContrast) {
    const double gain = contrast / static_cast<double>(kNeutralContrast);
    cv::Mat changed;
    result.convertTo(changed, -1, gain, 128 * (1 - gain) + brightness - kNeutralBrightness);
    result = changed;
  }
  if (horizontalFlip || verticalFlip) {
    cv::Mat changed;
    cv::flip(result, changed, horizontalFlip ? (verticalFlip ? -1 : 1) : 0);
    result = changed;
  }
  return result;
}

}  // namespace robot
