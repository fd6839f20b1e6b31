// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/open_source.h"

#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "ky/error.h"
#include "robot/camera/device_source.h"
#include "robot/camera/film_source.h"
#include "robot/camera/generated_source.h"
#include "robot/camera/picture_source.h"

namespace robot {
namespace {

std::unique_ptr<CameraSource> makeSource(const std::string& text, int camera) {
  namespace fs = std::filesystem;
  if (GeneratedSource::isMeantBy(text)) return std::make_unique<GeneratedSource>(text, camera);
  if (text.rfind("/dev/video", 0) == 0) return std::make_unique<DeviceSource>(text);
  std::error_code ignored;
  if (fs::is_directory(text, ignored)) return std::make_unique<PictureSource>(text);
  if (!fs::exists(text, ignored))
    throw Ky::KyError("there is no file or folder \"" + text +
                      "\"; a source is \"generated\", a film, a picture, a folder of pictures or "
                      "/dev/videoN");
  if (cv::haveImageReader(text)) return std::make_unique<PictureSource>(text);
  return std::make_unique<FilmSource>(text);
}

}  // namespace

std::unique_ptr<CameraSource> openSource(const std::string& text, int camera) {
  auto source = makeSource(text, camera);
  source->open();
  return source;
}

}  // namespace robot
