// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/lettering.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <functional>
#include <random>
#include <vector>

namespace {

constexpr int kPaints = 3;  // the first at first sight, the others as they were laid out

const QStringList kTexts = {
    "figure 12",
    "AVAWATo fi ffl",
    QString::fromLatin1("caf\xe9 \xff\xa0 x"),
    "  lead and trail ",
    "tab\there",
    "line\nbreak",
    "line\n break\n\nand (12).",
    QString::fromLatin1("soft\xadhyphen \x01\x7f\x85 x"),
    "Date: 2012-03-06T14:20:00",
    "Frame rate in Lookout may be\n limited by network bandwidth.",
};

struct Canvas {
  double scale = 1;
  Qt::LayoutDirection direction = Qt::LeftToRight;
  QFont font = QApplication::font();
};

// Soft edges on noise would show the smallest difference.
QImage paintedOnNoise(const Canvas& canvas, const std::function<void(QPainter&)>& paint) {
  std::minstd_rand random(5);
  QImage image(QSize(400, 340) * canvas.scale, QImage::Format_RGB32);
  std::generate_n(image.bits(), image.sizeInBytes(),
                  [&] { return static_cast<uchar>(random() >> 8); });
  image.setDevicePixelRatio(canvas.scale);
  QPainter painter(&image);
  painter.setLayoutDirection(canvas.direction);
  painter.setFont(canvas.font);
  painter.setPen(QPen(QColor(200, 40, 90), 0));
  painter.translate(3, 7);
  paint(painter);
  return image;
}

std::vector<Canvas> canvases() {
  std::vector<Canvas> all;
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      for (const double points : {6.0, 9.5, 12.0, 20.0}) {
        all.push_back({scale, direction, QApplication::font()});
        all.back().font.setPointSizeF(points);
      }
    }
  }
  return all;
}

// Draws one text, the row-th, onto a canvas of all.
using Draw = std::function<void(QPainter&, const QString& text, int row)>;

QImage paintedTexts(const Canvas& canvas, const std::function<void(QPainter&)>& begin,
                    const Draw& draw) {
  return paintedOnNoise(canvas, [&](QPainter& painter) {
    begin(painter);
    for (int row = 0; row < kTexts.size(); ++row) draw(painter, kTexts[row], row);
  });
}

// At each paint, also after a change of the canvas.
void expectTheSame(const Draw& byThePainter,
                   const std::function<Draw(Lettering& lettering)>& byLettering) {
  Lettering lettering;
  const auto begin = [&](QPainter& painter) { lettering.begin(painter); };
  for (const Canvas& canvas : canvases()) {
    const QImage expected = paintedTexts(
        canvas, [](QPainter&) {}, byThePainter);
    for (int i = 0; i < kPaints; ++i)
      ASSERT_EQ(paintedTexts(canvas, begin, byLettering(lettering)), expected)
          << "paint " << i << ", scale " << canvas.scale << ", " << canvas.font.pointSizeF()
          << " pt, direction " << canvas.direction;
  }
}

TEST(Lettering, DrawsWhatThePainterDrawsOnABaseline) {
  const auto baseline = [](int row) { return QPointF(7 * row - 10, 30 * row + 20); };
  const auto times = [](int row) { return 1 + row % 2; };
  expectTheSame(
      [&](QPainter& painter, const QString& text, int row) {
        for (int i = 0; i < times(row); ++i) painter.drawText(baseline(row), text);
      },
      [&](Lettering& lettering) {
        return [&](QPainter& painter, const QString& text, int row) {
          lettering.draw(painter, baseline(row), text, times(row));
        };
      });
}

TEST(Lettering, DrawsWhatThePainterDrawsCentred) {
  // Large texts do not fit.
  const auto place = [](int row) { return QRect(20, 30 * row, 320 + row % 2, 40 + row % 3); };
  expectTheSame(
      [&](QPainter& painter, const QString& text, int row) {
        painter.drawText(place(row), Qt::AlignHCenter | Qt::AlignVCenter, text);
      },
      [&](Lettering& lettering) {
        return [&](QPainter& painter, const QString& text, int row) {
          lettering.drawCentred(painter, place(row), text);
        };
      });
}

TEST(Lettering, TakesThePensColourEachTime) {
  Lettering lettering;
  const auto paint = [&](const QColor& colour) {
    return paintedOnNoise({}, [&](QPainter& painter) {
      lettering.begin(painter);
      painter.setPen(colour);
      lettering.draw(painter, QPointF(10, 50), "mark", 2);
    });
  };
  const QImage red = paint(Qt::red);
  EXPECT_NE(paint(Qt::blue), red);
  EXPECT_EQ(paint(Qt::red), red);
}

TEST(Lettering, DrawsATextOnABaselineAndCentredInOnePaint) {
  const QString text = "Date: 2012-03-06T14:20:00";
  const QRect place(20, 60, 320, 40);
  const QImage expected = paintedOnNoise({}, [&](QPainter& painter) {
    painter.drawText(QPointF(10, 50), text);
    painter.drawText(place, Qt::AlignHCenter | Qt::AlignVCenter, text);
  });
  Lettering lettering;
  for (int i = 0; i < kPaints; ++i) {
    const QImage image = paintedOnNoise({}, [&](QPainter& painter) {
      lettering.begin(painter);
      lettering.draw(painter, QPointF(10, 50), text, 1);
      lettering.drawCentred(painter, place, text);
    });
    EXPECT_EQ(image, expected) << i;
  }
}

TEST(Lettering, DrawsMoreTextThanItKeeps) {
  const QString last = QString("last ").repeated(300);
  Lettering lettering;
  for (int i = 0; i < kPaints; ++i) {
    const QImage image = paintedOnNoise({}, [&](QPainter& painter) {
      lettering.begin(painter);
      for (int label = 0; label < 300; ++label)
        lettering.draw(painter, QPointF(0, -500), QString::number(label).repeated(300), 2);
      lettering.draw(painter, QPointF(10, 50), last, 2);
    });
    const QImage expected = paintedOnNoise({}, [&](QPainter& painter) {
      for (int pass = 0; pass < 2; ++pass) painter.drawText(QPointF(10, 50), last);
    });
    EXPECT_EQ(image, expected) << i;
  }
}

}  // namespace
