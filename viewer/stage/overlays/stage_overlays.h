// SPDX-License-Identifier: Apache-2.0
// Draws figures and labels over the stage's picture, at the screen's resolution.
#pragma once

#include <QPainter>
#include <vector>

#include "viewer/stage/overlays/figure.h"
#include "viewer/stage/overlays/figure_pictures.h"
#include "viewer/stage/overlays/label_pictures.h"
#include "viewer/stage/overlays/label_places.h"
#include "viewer/stage/overlays/moment.h"

// One a canvas: it remembers where labels stood, and what it has painted already. GUI thread.
class StageOverlays {
 public:
  // Draws the sources that aren't hidden. The painter is one in device pixels: a transform that it
  // has does no more than undo the device's own scale. Safe whatever a robot put into the items.
  void paint(QPainter& painter, const std::vector<Moment::Source>& sources,
             const OverlayLook& look);

  // Where the labels stand that were drawn last, in device pixels.
  const std::vector<QRect>& labelRects() const { return fLabelRects; }

 private:
  struct Label {
    LabelPictures::Label* label;
    double opacity;
    QPointF mark;  // the middle of what it belongs to
  };

  void paintFigures(QPainter& painter, const Moment::Source& source, const OverlayLook& look,
                    TakenCells& taken);
  void paintLabels(QPainter& painter, const OverlayLook& look, TakenCells& taken);

  FigurePictures fFigurePictures;
  LabelPictures fLabelPictures;
  LabelPlaces fLabelPlaces;
  std::vector<Label> fLabels;      // while it is painted
  std::vector<LabelWish> fWishes;  // theirs
  std::vector<QRect> fLabelRects;
};
