// SPDX-License-Identifier: Apache-2.0
// Where and how large one overlay item's figure is on the stage.
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QSizeF>
#include <QTransform>
#include <optional>
#include <vector>

#include "viewer/core/display_object.h"

// How a picture lies on the device, in whose pixels everything is drawn.
struct OverlayLook {
  QSizeF picture;         // its own pixels
  QTransform toView;      // from these to the device's: scaled, turned by quarters, mirrored
  QRect view;             // what can be seen of the device
  QFont font;             // of labels
  double pixelRatio = 1;  // device pixels for a pixel of a widget

  // Device pixels for a pixel of the small view, in which robots state diameters.
  double figureScale() const;
};

// A circle, cross or square without its text: its line and a thin edge of another brightness around
// it, which sets it off from any picture. All in device pixels.
struct Figure {
  enum class Shape { Circle, Cross, Square };
  Shape shape = Shape::Circle;
  QPointF centre;
  double half = 0;  // from the centre to the inner side of the line; a cross's to its ends
  int line = 1;     // width
  int edge = 1;     // width
  QRgb colour = 0;

  // With line and edge.
  double reach() const;
  QRectF bounds() const;
};

// Where the item is, if that is anywhere near the view. Sizes are bounded, whatever a robot says.
std::optional<QPointF> placeOf(const displayObject& item, const OverlayLook& look);

// None for an item that is text only, or nothing at all, or out of view.
std::optional<Figure> figureOf(const displayObject& item, const OverlayLook& look);

// The parts of a straight figure's line, made wider by `more` on every side, as far as they are in
// the view. They don't overlap. None for circles.
std::vector<QRect> barsOf(const Figure& figure, int more, const QRect& view);

// Of the edge: light around dark colours, dark around light ones.
QColor edgeColour(QRgb colour);

void paintFigure(QPainter& painter, const Figure& figure, const QRect& view);
