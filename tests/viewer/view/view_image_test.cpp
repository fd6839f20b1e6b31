// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/view_image.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <algorithm>
#include <atomic>
#include <boost/make_shared.hpp>
#include <random>
#include <thread>

#include "support/wait.h"
#include "viewer/view/placement.h"
#include "zu/os.h"

namespace {

constexpr QRgb kGreen = 0xff008000;
constexpr QRgb kPaper = 0xfffafafa;

QRect box(int left, int top, int right, int bottom) {
  return QRect(QPoint(left, top), QPoint(right, bottom));
}

// A view on paper whose colour nothing else has.
class View : public testing::Test {
 protected:
  View() : fModel(boost::make_shared<Model>()), fView(fModel, nullptr) {
    QPalette palette(QColor::fromRgb(kPaper));
    palette.setColor(QPalette::Window, QColor::fromRgb(kPaper));
    palette.setColor(QPalette::WindowText, Qt::black);
    fView.setPalette(palette);
    fView.setFrameStyle(QFrame::NoFrame);
    fView.init();
  }

  void setFrame(int width, int height, QRgb colour = kGreen) {
    QImage frame(fModel->fImageData, std::max(width, 1), std::max(height, 1),
                 QImage::Format_ARGB32);
    frame.fill(colour);
    fModel->fWidth = width;
    fModel->fHeight = height;
  }
  void setTimestamp(std::int64_t timestamp) { fModel->fTimestamp = timestamp; }
  displayObject& add(const std::string& source, const std::string& name) {
    displayObject& item = fModel->fObjects[source].fObjects[name];
    item.x = item.y = 0.5;
    item.diameter = 20;
    item.thickness = 0;
    item.colour = 0x0000ff;
    return item;
  }
  QImage shot() { return fView.grab().toImage().convertToFormat(QImage::Format_RGB32); }

  boost::shared_ptr<Model> fModel;
  ViewImage fView;
};

bool isPlain(const QImage& image, const QRect& area, QRgb colour) {
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) {
      if (image.pixel(x, y) != colour) return false;
    }
  }
  return true;
}

// The smallest box around everything in `area` that is not of the colour.
QRect inkIn(const QImage& image, const QRect& area, QRgb colour) {
  QRect ink;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) {
      if (image.pixel(x, y) != colour) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

// What a text centred in a rectangle of the view looks like.
QImage withText(QImage image, const QRect& rectangle, const QString& text, const QColor& pen) {
  QPainter painter(&image);
  painter.setFont(QApplication::font());
  painter.setPen(pen);
  painter.drawText(rectangle, Qt::AlignHCenter | Qt::AlignVCenter, text);
  return image;
}

TEST_F(View, HasItsSizeAndFrame) {
  ViewImage view(fModel, nullptr);
  EXPECT_EQ(view.minimumSize(), QSize(640, 480));
  EXPECT_EQ(view.maximumSize(), QSize(640, 480));
  EXPECT_EQ(view.frameStyle(), 2);
  EXPECT_EQ(view.metaObject()->methodCount() - QFrame::staticMetaObject.methodCount(), 1);
  EXPECT_GE(view.metaObject()->indexOfSignal("updateWidget()"), 0);
}

TEST_F(View, ShowsTheInvitationWithoutAPicture) {
  setFrame(0, 0);
  QImage expected(640, 480, QImage::Format_RGB32);
  expected.fill(Qt::black);
  expected = withText(expected, box(0, 0, 639, 479), "> Press start <", Qt::white);
  const QImage image = shot();
  EXPECT_EQ(image, expected);
  const QRect ink = inkIn(image, image.rect(), 0xff000000);
  EXPECT_FALSE(ink.isEmpty());
  EXPECT_NEAR(ink.center().x(), 320, 2);
  EXPECT_NEAR(ink.center().y(), 240, 4);
}

TEST_F(View, ShowsTheInvitationForAPictureWithoutHeight) {
  setFrame(320, 0);
  EXPECT_EQ(shot().pixel(0, 0), 0xff000000);
  setFrame(-5, 240);
  EXPECT_EQ(shot().pixel(0, 0), 0xff000000);
}

TEST_F(View, ShowsANewModelsGreyLikeAnyFrame) {
  const QImage image = shot();
  // Grey 150 whose alpha is 150 as well, on the paper.
  const int grey = qRed(image.pixel(320, 240));
  EXPECT_NEAR(grey, (150 * 150 + 0xfa * 105) / 255, 2);
  EXPECT_TRUE(isPlain(image, box(160, 120, 479, 359), qRgb(grey, grey, grey)));
  EXPECT_TRUE(isPlain(image, box(0, 0, 639, 119), kPaper));
  QImage line(640, 480, QImage::Format_RGB32);
  line.fill(kPaper);
  line =
      withText(line, box(160, 360, 479, 389), "Timestamp: 0.000000 seconds,  fps: 0.0", Qt::black);
  EXPECT_EQ(image.copy(box(0, 360, 639, 380)), line.copy(box(0, 360, 639, 380)));
}

TEST_F(View, PaintsNothingOnceTheModelIsGone) {
  setFrame(320, 240);
  EXPECT_FALSE(isPlain(shot(), box(0, 0, 639, 479), kPaper));
  fModel.reset();
  EXPECT_TRUE(isPlain(shot(), box(0, 0, 639, 479), kPaper));
  fView.init();
  fView.updateThreadSafe();
}

TEST_F(View, ShowsTheInvitationWhenThePictureLosesItsHeight) {
  setFrame(320, 240);
  EXPECT_EQ(shot().pixel(300, 200), kGreen);
  fModel->fHeight = 0;
  EXPECT_EQ(shot().pixel(300, 200), 0xff000000);
  fModel->fHeight = 240;
  EXPECT_EQ(shot().pixel(300, 200), kGreen);
}

TEST_F(View, CountsEachNewPictureOnce) {
  EXPECT_EQ(fView.framesPainted(), 0U);
  setTimestamp(1);
  shot();
  shot();
  EXPECT_EQ(fView.framesPainted(), 1U);
  setTimestamp(2);
  shot();
  EXPECT_EQ(fView.framesPainted(), 2U);
}

TEST_F(View, KnowsWhenItPaintedTheNewestPicture) {
  shot();
  EXPECT_FALSE(fView.lastPainted().has_value());
  setTimestamp(1);
  const auto before = std::chrono::steady_clock::now();
  shot();
  const auto first = fView.lastPainted();
  ASSERT_TRUE(first.has_value());
  EXPECT_GE(*first, before);
  EXPECT_LE(*first, std::chrono::steady_clock::now());
  shot();
  EXPECT_EQ(fView.lastPainted(), first) << "the same picture again";
  setTimestamp(2);
  shot();
  EXPECT_GT(fView.lastPainted(), first);
}

TEST_F(View, CanBePaintedWithoutInit) {
  ViewImage view(fModel, nullptr);
  fModel->fWidth = 0;
  EXPECT_EQ(view.grab().toImage().pixel(10, 10), 0xff000000);
}

struct Size {
  int width, height;
  QRect picture;
};

void PrintTo(const Size& size, std::ostream* out) {
  *out << size.width << " x " << size.height;
}

class PictureOf : public View, public testing::WithParamInterface<Size> {};

TEST_P(PictureOf, StandsInItsPlaceAndNowhereElse) {
  setFrame(GetParam().width, GetParam().height);
  const QImage image = shot();
  const QRect picture = GetParam().picture;
  EXPECT_TRUE(isPlain(image, picture, kGreen));
  EXPECT_TRUE(isPlain(image, box(0, 0, 639, picture.top() - 1), kPaper));
  EXPECT_TRUE(isPlain(image, box(0, 0, picture.left() - 1, 479), kPaper));
  // Below the picture the texts begin; the first row under it is empty.
  EXPECT_TRUE(isPlain(image, box(0, picture.bottom() + 1, 639, picture.bottom() + 1), kPaper));
}

INSTANTIATE_TEST_SUITE_P(Frames, PictureOf,
                         testing::Values(Size{160, 120, box(160, 120, 479, 359)},
                                         Size{320, 240, box(160, 120, 479, 359)},
                                         Size{320, 100, box(160, 190, 479, 289)},
                                         Size{640, 480, box(160, 120, 479, 359)},
                                         Size{640, 240, box(160, 180, 479, 299)},
                                         Size{1280, 960, box(160, 120, 479, 359)},
                                         Size{800, 600, box(220, 165, 419, 314)}));

TEST_F(View, ScalesWithoutSmoothing) {
  setFrame(640, 480, 0xff000000);
  QImage frame(fModel->fImageData, 640, 480, QImage::Format_ARGB32);
  QPainter painter(&frame);
  for (int x = 0; x < 640; x += 2) painter.fillRect(x, 0, 1, 480, Qt::white);
  painter.end();
  // Every second column of the frame, not the grey between two of them.
  const QImage image = shot();
  EXPECT_TRUE(isPlain(image, box(160, 120, 479, 359), image.pixel(160, 120)));
  EXPECT_TRUE(image.pixel(160, 120) == 0xff000000 || image.pixel(160, 120) == 0xffffffff);
}

// What painting the whole frame's pixmap, scaled, gives.
QImage paintedWhole(const Model& model, const QRect& picture, bool scaled) {
  QPixmap pixmap = QPixmap::fromImage(
      QImage(model.fImageData, model.fWidth, model.fHeight, QImage::Format_ARGB32));
  if (scaled) pixmap = pixmap.scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
  QImage image(640, 480, QImage::Format_RGB32);
  image.fill(kPaper);
  QPainter(&image).drawPixmap(picture.topLeft(), pixmap);
  return image.copy(picture);
}

TEST_F(View, PaintsTheSamePixelsAsTheWholeFrameScaledAfterwards) {
  std::mt19937 random(11);
  const auto fill = [&](const QSize& size, int alpha) {
    for (int i = 0; i < size.width() * size.height() * 4; ++i)
      fModel->fImageData[i] = static_cast<unsigned char>(i % 4 < 3 || alpha < 0 ? random() : alpha);
  };
  constexpr int kRandom = -1;
  for (const QSize& size : {QSize(160, 120), QSize(320, 240), QSize(640, 480), QSize(1280, 960),
                            QSize(800, 600), QSize(161, 121), QSize(643, 481), QSize(1279, 959),
                            QSize(640, 479), QSize(1, 1), QSize(1280, 1), QSize(3, 700)}) {
    for (const int alpha : {255, 150, 0, kRandom}) {
      fill(size, alpha);
      fModel->fWidth = size.width();
      fModel->fHeight = size.height();
      fView.init();  // whatever the height was
      const Placement placement = placementFor(size.width(), size.height());
      const QRect picture(placement.origin, placement.pictureSize);
      EXPECT_EQ(shot().copy(picture), paintedWhole(*fModel, picture, placement.scaled))
          << size.width() << " x " << size.height() << ", alpha " << alpha;
    }
  }
}

TEST_F(View, ScalesWithoutMovingThings) {
  setFrame(640, 480, 0xff000000);
  QImage frame(fModel->fImageData, 640, 480, QImage::Format_ARGB32);
  QPainter(&frame).fillRect(320, 0, 320, 480, Qt::white);
  const QImage image = shot();
  EXPECT_TRUE(isPlain(image, box(160, 120, 319, 359), 0xff000000));
  EXPECT_TRUE(isPlain(image, box(320, 120, 479, 359), 0xffffffff));
}

TEST_F(View, KeepsTheFramesColours) {
  setFrame(320, 240, 0xff102030);
  EXPECT_EQ(shot().pixel(300, 200), 0xff102030);
}

class Lines : public View {
 protected:
  Lines() {
    qputenv("TZ", "UTC");
    setFrame(320, 240);
    setTimestamp(1331043600250000);
  }
  // The view with the texts as they are expected.
  QImage expected(const QColor& pen, const QString& fps = "0.0") {
    QImage image(640, 480, QImage::Format_RGB32);
    image.fill(kPaper);
    QPainter(&image).fillRect(160, 120, 320, 240, QColor::fromRgb(kGreen));
    image = withText(image, box(160, 360, 479, 389),
                     "Timestamp: 1331043600.250000 seconds,  fps: " + fps, pen);
    image = withText(image, box(160, 375, 479, 404), "Date: 2012-03-06T14:20:00", pen);
    return withText(image, box(160, 415, 479, 454),
                    "Frame rate in Lookout may be\n limited by network bandwidth.", Qt::darkGray);
  }
};

TEST_F(Lines, SayTimeRateDateAndTheNote) {
  EXPECT_EQ(shot(), expected(Qt::black));
}

TEST_F(Lines, SayTheDateInLocalTime) {
  qputenv("TZ", "EST5");
  setTimestamp(1331043600250000 + std::int64_t{5} * 3600 * 1000000);
  const QRect date = box(160, 383, 479, 404);
  EXPECT_EQ(shot().copy(date), expected(Qt::black).copy(date));
}

TEST_F(Lines, KeepTheirInkInsideTheirRectangles) {
  const QImage image = shot();
  const QRect lines = inkIn(image, box(0, 360, 639, 409), kPaper);
  const QRect note = inkIn(image, box(0, 410, 639, 479), kPaper);
  EXPECT_TRUE(box(160, 360, 479, 404).contains(lines)) << lines.top() << " " << lines.bottom();
  EXPECT_TRUE(box(160, 415, 479, 454).contains(note)) << note.top() << " " << note.bottom();
  EXPECT_NEAR(lines.center().x(), 319, 3);
  EXPECT_NEAR(note.center().y(), 434, 4);
}

TEST_F(Lines, AreDrawnInTheColourOfTheLastItem) {
  add("A", "1").colour = 0xff0000;
  add("B", "1").colour = 0x00ffff;
  add("B", "2");
  const QImage image = shot();
  const QRect below = box(0, 360, 639, 479);
  EXPECT_EQ(image.copy(below), expected(Qt::blue).copy(below));
}

TEST_F(Lines, KeepTheDefaultPenWhenNoPassWasDrawn) {
  add("A", "1").thickness = -1;
  EXPECT_EQ(shot(), expected(Qt::black));
}

TEST_F(Lines, ShowTheMeasuredRate) {
  std::int64_t now = 1000000;
  const zu::os::ClockOverride clock([&] {
    return zu::os::TimeValue{now / 1000000, now % 1000000};
  });
  shot();
  for (int i = 0; i < 30; ++i) {
    now += 67000;
    setTimestamp(1331043600250000 - 30 + i + 1);
    shot();
  }
  now += 0;
  EXPECT_EQ(shot(), expected(Qt::black, "14.9"));
}

TEST_F(Lines, CountARepaintOfTheSameFrameAsNoFrame) {
  std::int64_t now = 1000000;
  const zu::os::ClockOverride clock([&] {
    return zu::os::TimeValue{now / 1000000, now % 1000000};
  });
  shot();
  for (int i = 0; i < 30; ++i) {
    now += 100000;
    setTimestamp(1331043600250000 - 30 + i + 1);
    shot();
  }
  EXPECT_EQ(shot(), expected(Qt::black, "10.0"));
  now += 300000;
  EXPECT_EQ(shot(), expected(Qt::black, "9.0"));
}

TEST_F(View, DrawsItemsOverThePictureInItsCoordinates) {
  setFrame(640, 480);
  displayObject& square = add("A", "1");
  square.shape = 2;
  square.x = 0.25;
  square.y = 0.5;
  const QImage image = shot();
  EXPECT_EQ(image.pixel(160 + 70, 120 + 110), 0xff0000ff);
  EXPECT_EQ(image.pixel(160 + 90, 120 + 130), 0xff0000ff);
  EXPECT_EQ(image.pixel(160 + 80, 120 + 120), kGreen);
}

TEST_F(View, DrawsSourcesAndItemsInTheOrderOfTheirNames) {
  setFrame(320, 240);
  for (const char* source : {"B", "A"}) {
    for (const char* name : {"2", "1"}) {
      displayObject& square = add(source, name);
      square.shape = 2;
      square.colour = source[0] == 'B' && name[0] == '2' ? 0xff00ff : 0x00ffff;
    }
  }
  EXPECT_EQ(shot().pixel(160 + 150, 120 + 110), 0xffff00ff);
}

TEST_F(View, DrawsItemsBeyondThePictureToo) {
  setFrame(320, 240);
  displayObject& square = add("A", "1");
  square.shape = 2;
  square.x = -0.25;
  EXPECT_EQ(shot().pixel(160 - 80 - 10, 120 + 110), 0xff0000ff);
}

TEST_F(View, KeepsItsImageWhenOnlyTheHeightChanges) {
  setFrame(640, 480, 0xff0000ff);
  QImage frame(fModel->fImageData, 640, 480, QImage::Format_ARGB32);
  QPainter(&frame).fillRect(0, 0, 640, 240, QColor::fromRgb(kGreen));
  EXPECT_EQ(shot().pixel(300, 350), 0xff0000ff);
  // Half as high: all 480 rows are squeezed into the smaller place.
  fModel->fHeight = 240;
  const QImage image = shot();
  EXPECT_TRUE(isPlain(image, box(160, 180, 479, 239), kGreen));
  EXPECT_TRUE(isPlain(image, box(160, 240, 479, 299), 0xff0000ff));
  // Another width in between: built anew.
  fModel->fWidth = 320;
  shot();
  fModel->fWidth = 640;
  EXPECT_TRUE(isPlain(shot(), box(160, 180, 479, 299), kGreen));
}

TEST_F(View, DrawsAFrameOfStandardWidthUnscaledWhateverItsOldHeight) {
  setFrame(320, 240);
  shot();
  fModel->fHeight = 120;
  const QImage image = shot();
  EXPECT_TRUE(isPlain(image, box(160, 180, 479, 299), kGreen));
  EXPECT_EQ(image.pixel(160, 419), kGreen);  // the old rows go on under the texts
}

TEST_F(View, AsksForARepaintFromAnyThread) {
  fView.show();
  ASSERT_TRUE(waitUntil([&] { return fView.isVisible(); }));
  setFrame(320, 240);
  const zu::os::TimeValue start;
  std::atomic<int> paints = 0;
  const zu::os::ClockOverride clock([&] {
    ++paints;
    return start;
  });
  std::thread([&] { fView.updateThreadSafe(); }).join();
  EXPECT_EQ(paints, 0);  // queued, not painted by the other thread
  EXPECT_TRUE(waitUntil([&] { return paints > 0; }));
}

TEST_F(View, ShowsWholeFramesWhileAnotherThreadWritesThem) {
  std::atomic<bool> stop = false;
  std::thread camera([&] {
    for (int i = 0; !stop; ++i) {
      const QRgb colour = i % 2 == 0 ? kGreen : 0xff0000ff;
      {
        const Ky::KyCriticalSectionWrite lock(fModel->fImageMutex);
        setFrame(i % 3 == 0 ? 640 : 320, i % 3 == 0 ? 480 : 240, colour);
      }
      setTimestamp(i);
      const Ky::KyCriticalSection lock(fModel->fObjectsMutex);
      fModel->fObjects.clear();
      add("A", std::to_string(i)).y = 0;
    }
  });
  for (int i = 0; i < 60; ++i) {
    const QImage image = shot();
    EXPECT_TRUE(isPlain(image, box(160, 120, 479, 359), image.pixel(300, 200))) << i;
  }
  stop = true;
  camera.join();
}

}  // namespace
