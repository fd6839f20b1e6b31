// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/faces/face_detector.h"

#include <opencv2/imgproc.hpp>

#include "robot/camera/field_of_view.h"

namespace robot {
namespace {

constexpr int kResolution = 2;

Ky::KyValue entryOf(const Face& face, cv::Size size) {
  const double width = size.width, height = size.height;
  const double x = face.area.x + face.area.width / 2, y = face.area.y + face.area.height / 2;
  const Ky::KyValue shape =
      Ky::KyValue::array({0, alphaAt(x / width), betaAt(y / height),
                          alphaOver(face.area.width / width), betaOver(face.area.height / height)});
  return Ky::KyValue::array({shape, Ky::KyValue::array({face.support})});
}

}  // namespace

std::vector<Finding> FaceDetector::detect(const Frame& frame) {
  cv::Mat grey;
  cv::cvtColor(frame.picture(kResolution), grey, cv::COLOR_BGR2GRAY);
  const std::vector<Face> faces = fFinder.find(grey);
  Ky::KyValue::Array entries;
  for (const Face& face : faces) entries.push_back(entryOf(face, grey.size()));
  // The last entry is no face; readers leave it out.
  if (!faces.empty())
    entries.push_back(Ky::KyValue::array({static_cast<std::int64_t>(faces.size())}));
  return {{"FaceDetected", findings(frame, std::move(entries))}};
}

}  // namespace robot
