// SPDX-License-Identifier: Apache-2.0
// Lines to measure a picture by.
#pragma once

#include "viewer/stage/viewport.h"

class QPainter;

// Over the whole picture, in the view's device pixels: tenths of its width and height, the middle
// lines stronger; and one around each pixel where those are large. Reads on any picture.
void paintGrid(QPainter& painter, const Viewport& viewport);
