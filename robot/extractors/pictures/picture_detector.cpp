// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/pictures/picture_detector.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "robot/camera/field_of_view.h"

namespace robot {
namespace {

constexpr int kResolution = 2;
constexpr int kMostFeatures = 1200;
constexpr std::chrono::milliseconds kLoading{200};  // at most, of a look

}  // namespace

Ky::KyValue logoEntry(const TaughtPicture& picture, const FoundPicture& found, cv::Size size) {
  const auto [left, right] =
      std::minmax({found.corners[0].x, found.corners[1].x, found.corners[2].x, found.corners[3].x});
  const auto [top, bottom] =
      std::minmax({found.corners[0].y, found.corners[1].y, found.corners[2].y, found.corners[3].y});
  const double width = size.width, height = size.height;
  const Ky::KyValue shape = Ky::KyValue::array(
      {0, alphaAt((left + right) / 2 / width), betaAt((top + bottom) / 2 / height),
       alphaOver((right - left) / width), betaOver((bottom - top) / height)});
  return Ky::KyValue::array({shape, Ky::KyValue::array({picture.label, found.matched})});
}

Ky::KyValue pictureEntry(const TaughtPicture& picture, const FoundPicture& found, cv::Size size) {
  Ky::KyValue::Array boundary;
  for (const cv::Point2f& corner : found.corners)
    boundary.push_back(Ky::KyValue::array({alphaAt(static_cast<double>(corner.x) / size.width),
                                           betaAt(static_cast<double>(corner.y) / size.height)}));
  const double share = found.matched / static_cast<double>(picture.features.points.size());
  return Ky::KyValue::array(
      {Ky::KyValue::array({picture.label}), found.matched, share, std::move(boundary)});
}

PictureDetector::PictureDetector(std::string key, PictureEntry entry, std::filesystem::path folder,
                                 const std::string& who)
    : fKey(std::move(key)), fEntry(entry), fFolder(folder), fPictures(std::move(folder), who) {
}

std::vector<Finding> PictureDetector::detect(const Frame& frame) {
  if (fReload.exchange(false)) fPictures.rescan();
  fPictures.loadSome(kLoading);
  const auto pictures = fPictures.pictures();
  Ky::KyValue::Array entries;
  if (!pictures.empty()) {
    cv::Mat grey;
    cv::cvtColor(frame.picture(kResolution), grey, cv::COLOR_BGR2GRAY);
    const Features scene = featuresOf(grey, kMostFeatures);
    for (const auto& picture : pictures)
      if (const auto found = findPicture(*picture, scene, grey.size()))
        entries.push_back(fEntry(*picture, *found, grey.size()));
  }
  return {{fKey, findings(frame, std::move(entries))}};
}

}  // namespace robot
