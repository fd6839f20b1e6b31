// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/label_pictures.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "viewer/stage/overlays/overlay_text.h"

namespace {

constexpr qsizetype kMostBytes = 32 << 20;
constexpr qsizetype kLabelBytes = 512;  // of one without its picture
constexpr double kLongest = 24;         // lines' heights
const QColor kBox(16, 16, 16, 200);

QString wordsOf(const std::string& text, std::int64_t age) {
  const QString said = textOf(text).trimmed();
  if (age < 0) return said;
  const QString old = ageText(age * 100000);
  return said.isEmpty() ? old : said + " (" + old + ")";
}

// In a widget's pixels.
struct Layout {
  explicit Layout(const QFont& font) : metrics(font), line(metrics.height()) {}

  QString fitting(const QString& words) const {
    return metrics.elidedText(words, Qt::ElideRight, kLongest * line);
  }
  QSizeF sizeOf(const QString& words) const {
    return {bar + 2 * margin + std::ceil(metrics.horizontalAdvance(words)), std::ceil(line) + 2};
  }

  QFontMetricsF metrics;
  double line;
  double bar = std::max(2.0, std::round(line / 6));
  double margin = std::round(line / 4);
};

}  // namespace

void LabelPictures::begin(const QFont& font, double pixelRatio) {
  if (font == fFont && pixelRatio == fPixelRatio && fBytes <= kMostBytes) return;
  fFont = font;
  fPixelRatio = pixelRatio;
  fLabels.clear();
  fBytes = 0;
}

LabelPictures::Label& LabelPictures::of(const std::string& text, std::int64_t age, QRgb colour) {
  const auto [found, isNew] = fLabels.try_emplace({text, age, colour | 0xFF000000U});
  Label& label = found->second;
  if (!isNew) return label;
  fBytes += kLabelBytes + 2 * static_cast<qsizetype>(text.size());
  const Layout layout(fFont);
  label.words = layout.fitting(wordsOf(text, age));
  label.colour = found->first.colour;
  if (!label.words.isEmpty()) label.size = (layout.sizeOf(label.words) * fPixelRatio).toSize();
  return label;
}

const QImage& LabelPictures::pictureOf(Label& label) {
  if (label.picture.isNull() && !label.size.isEmpty()) {
    label.picture = painted(label);
    fBytes += label.picture.sizeInBytes();
  }
  return label.picture;
}

QImage LabelPictures::painted(const Label& label) const {
  const Layout layout(fFont);
  QImage image(label.size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.scale(fPixelRatio, fPixelRatio);
  const QSizeF size = QSizeF(label.size) / fPixelRatio;
  const double half = layout.margin / 2;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kBox);
  painter.drawRoundedRect(QRectF(QPointF(), size), half, half);
  painter.fillRect(QRectF(half, half, layout.bar, size.height() - 2 * half), QColor(label.colour));
  painter.setPen(Qt::white);
  painter.setFont(fFont);
  painter.drawText(QPointF(layout.bar + 3 * half, 1 + layout.metrics.ascent()), label.words);
  return image;
}
