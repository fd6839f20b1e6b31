// SPDX-License-Identifier: Apache-2.0
// Module::getNext(): one image from the robot's camera into the model.
#include <opencv2/core/core_c.h>
#include <opencv2/imgproc/imgproc_c.h>

#include <QCoreApplication>
#include <array>
#include <memory>
#include <optional>
#include <string>

#include "viewer/acquisition/yuv_conversion.h"
#include "viewer/core/module.h"
#include "zu/log.h"

namespace {

// Places in the image record.
enum Element {
  kWidth = 0,
  kHeight = 1,
  kColorSpace = 3,
  kSeconds = 4,
  kMicroseconds = 5,
  kPixels = 6,
  kCamera = 7,
  kFirstAngle = 8
};
constexpr std::size_t kFewestElements = 7;
constexpr std::size_t kElementsWithAngles = 12;

// What the log calls a wrong number of elements, for people.
std::string noImage() {
  return QCoreApplication::translate("Module", "the robot answers with something that is no image")
      .toStdString();
}

// Half-angles of the robot's camera in radians, for records that don't bring theirs.
constexpr std::array<float, 4> kDefaultAngles = {0.41692221F, 0.32097778F, -0.41692221F,
                                                 -0.32097778F};

// What of a record concerns the frame buffer, as far as it could be read.
struct Picture {
  Ky::KyBinary pixels;
  std::optional<int> width, height;
  int colorSpace = 0;
  bool complete = false;  // the whole record could be read
};

std::size_t elementCount(const Ky::KyValue& record) {
  return record.isArray() ? record.size() : 0;
}

void readAngles(const Ky::KyValue& record, Model& model) {
  const bool given = record.size() >= kElementsWithAngles;
  for (std::size_t i = 0; i < model.fAngles.size(); ++i)
    model.fAngles[i] = given ? record[kFirstAngle + i].asFloat() : kDefaultAngles[i];
}

// Into the picture and the unguarded members of the model. Throws KyError at the first element that
// can't be read; what was read before it stays.
void readRecord(const Ky::KyValue& record, Model& model, Picture& picture) {
  picture.pixels = record[kPixels].asBinary();
  picture.width = record[kWidth].asInt();
  picture.height = record[kHeight].asInt();
  picture.colorSpace = record[kColorSpace].asInt();
  model.fTimestamp = microsecondsOf(record[kSeconds].asInt64(), record[kMicroseconds].asInt64());
  if (record.size() > kCamera) model.fCamera = static_cast<std::uint8_t>(record[kCamera].asInt());
  readAngles(record, model);
  picture.complete = true;
}

struct ReleaseHeader {
  void operator()(IplImage* header) const { cvReleaseImageHeader(&header); }
};
using ImageHeader = std::unique_ptr<IplImage, ReleaseHeader>;

ImageHeader createHeader(int width, int height) {
  return ImageHeader(cvCreateImageHeader(cvSize(width, height), IPL_DEPTH_8U, 4));
}

// The viewer never shows 160 x 120 colour pixels: it shows them doubled. False when that can't be.
bool enlargeInto(Model& model, const std::uint8_t* in, unsigned char* scratch) {
  model.fWidth = 2 * yuv::kSmallWidth;
  model.fHeight = 2 * yuv::kSmallHeight;
  if (model.fImageData == nullptr || scratch == nullptr) return false;
  yuv::convertSmall422(in, scratch);
  const ImageHeader small = createHeader(yuv::kSmallWidth, yuv::kSmallHeight);
  if (!small) return false;
  const ImageHeader large = createHeader(model.fWidth, model.fHeight);
  if (!large) return false;
  cvSetData(small.get(), scratch, yuv::kSmallWidth * 4);
  cvSetData(large.get(), model.fImageData, model.fWidth * 4);
  cvResize(small.get(), large.get(), CV_INTER_CUBIC);
  return true;
}

// With fImageMutex held for writing. The sizes may be trusted: the proxy checked them against the
// largest frame and against the pixels. False when there is nothing to show.
bool convertInto(Model& model, const Picture& picture, unsigned char* scratch) {
  const std::uint8_t* in = picture.pixels.data();
  const int width = *picture.width;
  const int height = *picture.height;
  switch (picture.colorSpace) {
    case 0:
      yuv::convertGrey(in, width, height, model.fImageData);
      return true;
    case 9:
      if (width == yuv::kSmallWidth && height == yuv::kSmallHeight)
        return enlargeInto(model, in, scratch);
      yuv::convert422(in, width, height, model.fImageData);
      return true;
    case 10:
      yuv::convert444(in, width, height, model.fImageData);
      return true;
    default:
      return true;  // the pixels stay as they were
  }
}

// Size and pixels change under one lock, so that nobody sees the one without the other.
bool store(const Picture& picture, Model& model, unsigned char* scratch) {
  const Ky::KyCriticalSectionWrite guard(model.fImageMutex);
  if (picture.width) model.fWidth = *picture.width;
  if (picture.height) model.fHeight = *picture.height;
  return !picture.complete || convertInto(model, picture, scratch);
}

// As it came, for whoever wants to see more of it than the frame buffer shows.
void handOn(const Picture& picture, Model& model) {
  const bool isKnown =
      picture.colorSpace == 0 || picture.colorSpace == 9 || picture.colorSpace == 10;
  if (!picture.complete || !isKnown || *picture.width < 1 || *picture.height < 1) return;
  Frame frame;
  frame.pixels = picture.pixels;
  frame.width = *picture.width;
  frame.height = *picture.height;
  frame.colorSpace = picture.colorSpace;
  frame.timestamp = model.fTimestamp;
  model.fFrames.publish(std::move(frame));
}

}  // namespace

void Module::getNext() {
  if (!fVideoDevice) return;
  const zu::log::Subject robot(fRobot);
  Ky::KyValue record;
  std::string problem;
  try {
    record = fVideoDevice->getImageRemote(fSubscriberName);
  } catch (const Ky::KyError& error) {
    problem = error.what();
    zu::log::error("periscope", "getNext") << problem;
  }
  if (elementCount(record) < kFewestElements) {
    zu::log::error("periscope", "getNext") << "Wrong number of elements";
    fModel->setPictureProblem(problem.empty() ? noImage() : problem);
    return;
  }
  Picture picture;
  try {
    readRecord(record, *fModel, picture);
  } catch (const Ky::KyError& error) {
    problem = error.what();
    zu::log::error("periscope", "getNext") << problem;
  }
  fModel->setPictureProblem(problem);
  if (!store(picture, *fModel, fConvertBuffer)) return;
  handOn(picture, *fModel);
  if (GCInterface* gui = fGui) gui->updateImage();
}

void Module::nextImage() {
}

void Module::previousImage() {
}
