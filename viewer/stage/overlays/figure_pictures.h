// SPDX-License-Identifier: Apache-2.0
// Figures painted once, to be drawn often: a thousand of them cost a blit each.
#pragma once

#include <QHash>
#include <QImage>

#include "viewer/stage/overlays/figure.h"

// Thread-bound.
class FigurePictures {
 public:
  // Draws the figure, its middle moved by half a pixel at most.
  void draw(QPainter& painter, const Figure& figure, const QRect& view);

 private:
  struct Key {
    Figure::Shape shape;
    int halves;  // of a pixel, from the middle
    int line;
    int edge;
    QRgb colour;

    bool operator==(const Key&) const = default;
    friend std::size_t qHash(const Key& key, std::size_t seed) {
      return qHashMulti(seed, static_cast<int>(key.shape), key.halves, key.line, key.edge,
                        key.colour);
    }
  };

  const QImage& pictureOf(const Figure& figure);

  QHash<Key, QImage> fPictures;
  qsizetype fBytes = 0;
};
