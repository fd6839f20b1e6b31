// SPDX-License-Identifier: Apache-2.0
// The meter behind the "fps" under the picture.
#pragma once

// Frames per second over the latest 30 frames, rounded down to one decimal; 0 until time has
// passed. To be called at every paint: `newFrame` tells whether the picture is a new one; a repaint
// of the same picture lengthens that picture's interval. While fewer than 30 frames have been seen
// their places in the ring count as no time at all, so that the result is not the true rate yet.
//
// GUI thread only: the meter is one for the whole process, shared by all views.
double ComputeCurrentFrameRate(bool newFrame);
