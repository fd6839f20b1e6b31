// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/figure_pictures.h"

#include <cmath>

namespace {

// Larger ones are few, or cover each other.
constexpr double kLargestReach = 128;
constexpr qsizetype kMostBytes = 64 << 20;

QImage painted(Figure figure) {
  const int middle = static_cast<int>(std::ceil(figure.reach())) + 1;
  QImage image(2 * middle, 2 * middle, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  figure.centre = {static_cast<double>(middle), static_cast<double>(middle)};
  QPainter painter(&image);
  paintFigure(painter, figure, image.rect());
  return image;
}

}  // namespace

void FigurePictures::draw(QPainter& painter, const Figure& figure, const QRect& view) {
  if (figure.reach() > kLargestReach) {
    paintFigure(painter, figure, view);
    return;
  }
  const QImage& picture = pictureOf(figure);
  painter.drawImage(QPoint(static_cast<int>(std::lround(figure.centre.x())) - picture.width() / 2,
                           static_cast<int>(std::lround(figure.centre.y())) - picture.height() / 2),
                    picture);
}

const QImage& FigurePictures::pictureOf(const Figure& figure) {
  const Key key{figure.shape, static_cast<int>(std::lround(2 * figure.half)), figure.line,
                figure.edge, figure.colour};
  const auto found = fPictures.constFind(key);
  if (found != fPictures.constEnd()) return *found;
  if (fBytes > kMostBytes) {
    fPictures.clear();
    fBytes = 0;
  }
  Figure whole = figure;
  whole.half = key.halves / 2.0;
  const QImage& picture = *fPictures.insert(key, painted(whole));
  fBytes += picture.sizeInBytes();
  return picture;
}
