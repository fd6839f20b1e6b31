// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_signs.h"

#include <opencv2/imgproc.hpp>
#include <string>

#include "robot/camera/scene_item.h"
#include "robot/camera/scene_pictures.h"

namespace robot {
namespace {

constexpr int kGround = 800;  // where posts stand

// Stands still, whatever the picture's size.
class Sign : public SceneItem {
 public:
  Sign(std::string name, cv::Mat art, cv::Point corner)
      : fName(std::move(name)), fArt(std::move(art)), fPlace(corner, fArt.size()) {}

  void draw(cv::Mat& picture, std::int64_t) const override {
    const cv::Scalar wood(58, 84, 112);
    constexpr int kFrame = 7;
    const cv::Rect board(fPlace.tl() - cv::Point(kFrame, kFrame),
                         fPlace.br() + cv::Point(kFrame, kFrame));
    const int middle = fPlace.x + fPlace.width / 2;
    cv::rectangle(picture, {middle - 7, board.br().y, 14, kGround - board.br().y}, wood * 0.8,
                  cv::FILLED);
    cv::rectangle(picture, board, wood, cv::FILLED);
    fArt.copyTo(picture(fPlace));
  }

  std::optional<SceneTruth> truthAt(std::int64_t) const override {
    constexpr double width = kSceneWidth, height = kSceneHeight;
    return SceneTruth{fName, (fPlace.x + fPlace.width / 2.0) / width,
                      (fPlace.y + fPlace.height / 2.0) / height, fPlace.width / width,
                      fPlace.height / height};
  }

 private:
  std::string fName;
  cv::Mat fArt;
  cv::Rect fPlace;
};

}  // namespace

std::unique_ptr<SceneItem> makeHarbourSign() {
  return std::make_unique<Sign>("picture", paintHarbour(), cv::Point(178, 176));
}

std::unique_ptr<SceneItem> makeEmblemSign() {
  return std::make_unique<Sign>("logo", paintEmblem(), cv::Point(208, 556));
}

}  // namespace robot
