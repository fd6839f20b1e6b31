// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/lettering.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>
#include <cmath>

namespace {

// A few megabytes; what a robot writes beyond that is laid out at each paint.
constexpr qsizetype kMostCharacters = 1 << 17;

QTextOption optionsOf(const QPainter& painter) {
  QTextOption options(Qt::AlignLeft | Qt::AlignAbsolute);
  options.setTextDirection(painter.layoutDirection());
  options.setWrapMode(QTextOption::NoWrap);
  return options;
}

// Lines stand on whole pixels, as those of QPainter do.
void stack(QTextLayout& layout, double leading) {
  layout.beginLayout();
  double top = -leading;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(1 << 24);
    top = std::ceil(top + leading);
    line.setPosition({0, top});
    top += line.height();
  }
  layout.endLayout();
}

// Text is placed by the 64th part of a pixel.
double inFixedPoint(double value) {
  return std::trunc(value * 64) / 64;
}

}  // namespace

void Lettering::begin(const QPainter& painter) {
  const Style style{painter.font(), painter.device()->logicalDpiY(), painter.layoutDirection()};
  if (style == fStyle) {
    forget();
  } else {
    fTexts.clear();
    fCharacters = 0;
    fStyle = style;
  }
  fLineHeight = painter.fontMetrics().height();
  ++fPaint;
}

void Lettering::draw(QPainter& painter, const QPointF& baseline, const QString& text, int times) {
  Text* kept = keep(text, times > 1);
  if (kept != nullptr && !(kept->layout && kept->layout->place.isNull()))
    kept->layout = onBaseline(painter, text);
  for (int i = 0; i < times; ++i) {
    if (kept != nullptr) {
      drawLines(painter, baseline, *kept->layout);
    } else {
      painter.drawText(baseline, text);
    }
  }
}

void Lettering::drawCentred(QPainter& painter, const QRect& place, const QString& text) {
  Text* kept = keep(text, false);
  if (kept != nullptr && !(kept->layout && kept->layout->place == place))
    kept->layout = centredIn(painter, place, text);
  if (kept != nullptr && kept->layout->fits) {
    drawLines(painter, QPointF(), *kept->layout);
  } else {
    painter.drawText(place, Qt::AlignCenter, text);
  }
}

Lettering::Layout Lettering::onBaseline(const QPainter& painter, const QString& text) {
  QTextLayout layout(text, painter.font(), painter.device());
  layout.setTextOption(optionsOf(painter));
  stack(layout, 0);
  if (layout.lineCount() == 0) return {QRect(), true, {}};
  return {QRect(), true, {{{0, -layout.lineAt(0).ascent()}, layout.lineAt(0).glyphRuns()}}};
}

Lettering::Layout Lettering::centredIn(QPainter& painter, const QRect& place, const QString& text) {
  const QRectF bounds = painter.boundingRect(QRectF(place), Qt::AlignCenter, text);
  QTextLayout layout(QString(text).replace('\n', QChar::LineSeparator).replace('\t', ' '),
                     painter.font(), painter.device());
  layout.setTextOption(optionsOf(painter));
  stack(layout, QFontMetricsF(painter.font(), painter.device()).leading());
  Layout result{place, QRectF(place).contains(bounds), {}};
  for (int i = 0; i < layout.lineCount(); ++i) {
    const QTextLine line = layout.lineAt(i);
    const double left = bounds.left() + (bounds.width() - line.horizontalAdvance()) / 2;
    result.lines.push_back({{inFixedPoint(left), inFixedPoint(bounds.top())}, line.glyphRuns()});
  }
  return result;
}

// What the latest paint did not draw.
void Lettering::forget() {
  fTexts.removeIf([this](const auto& entry) {
    if (entry.value().paint == fPaint) return false;
    fCharacters -= entry.key().size();
    return true;
  });
}

// Null when it is not worth laying out.
Lettering::Text* Lettering::keep(const QString& text, bool atFirstSight) {
  auto entry = fTexts.find(text);
  if (entry != fTexts.end()) {
    entry->paint = fPaint;
    return &*entry;
  }
  if (fCharacters + text.size() > kMostCharacters) return nullptr;
  fCharacters += text.size();
  entry = fTexts.insert(text, Text());
  entry->paint = fPaint;
  return atFirstSight ? &*entry : nullptr;
}

void Lettering::drawLines(QPainter& painter, const QPointF& offset, const Layout& layout) {
  for (const Line& line : layout.lines)
    for (const QGlyphRun& glyphs : line.glyphs) painter.drawGlyphRun(offset + line.origin, glyphs);
}
