// SPDX-License-Identifier: Apache-2.0
#include "robot/extractors/faces/face_finder.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "ky/error.h"

namespace robot {
namespace {

constexpr double kStep = 1.1;  // from one size of face to the next
constexpr double kFineStep = 1.05;
// At how many neighbouring places a face must be seen.
constexpr int kNeighbours = 4;
constexpr int kNeighboursAgain = 3;
constexpr int kEyeNeighbours = 2;
// So many neighbours speak for a face by themselves; below it needs eyes.
constexpr int kSure = 14;
constexpr double kEyesWidth = 160;  // to which a face is enlarged, for its eyes

cv::CascadeClassifier load(const std::filesystem::path& file) {
  cv::CascadeClassifier cascade;
  bool loaded = false;
  try {
    loaded = std::filesystem::is_regular_file(file) && cascade.load(file.string());
  } catch (const cv::Exception&) {  // no XML
  }
  if (!loaded)
    throw Ky::KyError("\"" + file.string() +
                      "\", which tells how a face looks, can't be read; install Debian's package "
                      "opencv-data");
  return cascade;
}

cv::Rect grown(const cv::Rect& area, int by, const cv::Mat& picture) {
  const cv::Rect larger(area.x - by, area.y - by, area.width + 2 * by, area.height + 2 * by);
  return larger & cv::Rect({0, 0}, picture.size());
}

}  // namespace

FaceFinder::FaceFinder(const std::filesystem::path& cascades)
    : fFirst(load(cascades / "haarcascade_frontalface_alt2.xml")),
      fSecond(load(cascades / "haarcascade_frontalface_alt.xml")),
      fEye(load(cascades / "haarcascade_eye.xml")) {
}

std::vector<Face> FaceFinder::find(const cv::Mat& grey) {
  std::vector<cv::Rect> areas;
  std::vector<int> support;
  fFirst.detectMultiScale(grey, areas, support, kStep, kNeighbours, 0, {kSmallest, kSmallest});
  std::vector<Face> faces;
  for (std::size_t i = 0; i < areas.size(); ++i)
    if (isConfirmed(grey, areas[i]) && (support[i] >= kSure || hasBothEyes(grey, areas[i])))
      faces.push_back({areas[i], support[i]});
  std::sort(faces.begin(), faces.end(),
            [](const Face& a, const Face& b) { return a.area.x < b.area.x; });
  return faces;
}

// A second opinion, by a cascade that was taught otherwise.
bool FaceFinder::isConfirmed(const cv::Mat& grey, const cv::Rect& area) {
  const cv::Mat around = grey(grown(area, area.width / 4, grey));
  const int smallest = area.width * 2 / 3, largest = area.width * 4 / 3;
  std::vector<cv::Rect> found;
  fSecond.detectMultiScale(around, found, kFineStep, kNeighboursAgain, 0, {smallest, smallest},
                           {largest, largest});
  return !found.empty();
}

bool FaceFinder::hasBothEyes(const cv::Mat& grey, const cv::Rect& area) {
  const cv::Rect upper(area.x, area.y + area.height / 8, area.width, area.height / 2);
  cv::Mat enlarged;
  const double factor = std::max(1.0, kEyesWidth / area.width);
  cv::resize(grey(grown(upper, 0, grey)), enlarged, {}, factor, factor, cv::INTER_CUBIC);
  std::vector<cv::Rect> eyes;
  fEye.detectMultiScale(enlarged, eyes, kFineStep, kEyeNeighbours, 0, {20, 20});
  return eyes.size() >= 2;
}

}  // namespace robot
