// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/landmarks/tag_finder.h"

#include <apriltag/apriltag.h>
#include <apriltag/tag36h11.h>

namespace robot {
namespace {

// A square of the family differs from every other in 11 of its 36 cells. Accepting two wrong cells
// instead of one finds hardly more of them, and more that are none.
constexpr int kWrongCells = 1;
// Grey levels between a cell and the middle of black and white, on average. Noise alone has less.
constexpr float kLeastContrast = 12;
// Squares are looked for in every second pixel of a picture at least this wide.
constexpr int kWide = 1000;

Tag tagOf(const apriltag_detection_t& detection) {
  Tag tag;
  tag.number = detection.id;
  tag.centre = {detection.c[0], detection.c[1]};
  for (std::size_t i = 0; i < tag.corners.size(); ++i)
    tag.corners[i] = {detection.p[i][0], detection.p[i][1]};
  return tag;
}

}  // namespace

TagFinder::TagFinder()
    : fFamily(tag36h11_create(), tag36h11_destroy),
      fDetector(apriltag_detector_create(), apriltag_detector_destroy) {
  apriltag_detector_add_family_bits(fDetector.get(), fFamily.get(), kWrongCells);
  fDetector->nthreads = 1;
}

TagFinder::~TagFinder() = default;

std::vector<Tag> TagFinder::find(const cv::Mat& grey) {
  fDetector->quad_decimate = grey.cols >= kWide ? 2 : 1;
  // It only reads the pixels.
  image_u8_t image{grey.cols, grey.rows, static_cast<std::int32_t>(grey.step), grey.data};
  const std::unique_ptr<zarray_t, void (*)(zarray_t*)> detections(
      apriltag_detector_detect(fDetector.get(), &image), apriltag_detections_destroy);
  std::vector<Tag> tags;
  for (int i = 0; i < zarray_size(detections.get()); ++i) {
    apriltag_detection_t* detection = nullptr;
    zarray_get(detections.get(), i, &detection);
    if (detection->decision_margin >= kLeastContrast) tags.push_back(tagOf(*detection));
  }
  return tags;
}

}  // namespace robot
