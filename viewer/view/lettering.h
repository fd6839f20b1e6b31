// SPDX-License-Identifier: Apache-2.0
// Texts that are laid out once and drawn at many paints.
#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QHash>
#include <QPointF>
#include <QRect>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

class QPainter;

// Draws the same pixels as QPainter::drawText(), which lays a text out each time: most of what a
// text costs. One that is drawn more than once, in this paint or in the one before too, is laid out
// and kept until a paint does without it. In the painter's pen. GUI thread.
class Lettering {
 public:
  // To be called at the beginning of each paint.
  void begin(const QPainter& painter);

  // Of the painter's font, in pixels.
  int lineHeight() const { return fLineHeight; }

  // As painter.drawText(baseline, text), `times` times.
  void draw(QPainter& painter, const QPointF& baseline, const QString& text, int times);
  // As painter.drawText(place, Qt::AlignCenter, text).
  void drawCentred(QPainter& painter, const QRect& place, const QString& text);

 private:
  struct Line {
    QPointF origin;
    QList<QGlyphRun> glyphs;
  };
  struct Layout {
    QRect place;  // null on a baseline
    bool fits;    // what does not is clipped
    std::vector<Line> lines;
  };
  struct Text {
    std::uint64_t paint = 0;  // the latest one that drew it
    std::optional<Layout> layout;
  };
  struct Style {
    QFont font;
    int dotsPerInch = 0;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    bool operator==(const Style&) const = default;
  };

  void forget();
  Text* keep(const QString& text, bool atFirstSight);
  static Layout onBaseline(const QPainter& painter, const QString& text);
  static Layout centredIn(QPainter& painter, const QRect& place, const QString& text);
  static void drawLines(QPainter& painter, const QPointF& offset, const Layout& layout);

  Style fStyle;
  int fLineHeight = 0;
  std::uint64_t fPaint = 0;
  qsizetype fCharacters = 0;  // of all texts that are kept
  QHash<QString, Text> fTexts;
};
