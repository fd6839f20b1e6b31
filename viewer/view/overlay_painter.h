// SPDX-License-Identifier: Apache-2.0
// Draws the overlay items over the picture.
#pragma once

#include <QRectF>
#include <QSizeF>

#include "viewer/core/display_object.h"

class Lettering;
class QPainter;

// Draws one item onto a picture of `pictureSize` whose top-left corner is the painter's origin, and
// leaves the item's colour as the painter's pen. `view` is the part of the plane that can be seen,
// in the same coordinates. Any item is safe to draw, whatever a robot put into it. `lettering` has
// begun this paint. GUI thread only.
void paintOverlay(QPainter& painter, Lettering& lettering, const displayObject& item,
                  const QSizeF& pictureSize, const QRectF& view);
