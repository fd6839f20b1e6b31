// SPDX-License-Identifier: Apache-2.0
// The size of a panel's texts.
#pragma once

#include "viewer/settings/custom_slider.h"

// Gives a panel of fixed size that is about to be shown texts of the desktop's size, or of the
// largest that fits, and its sliders' labels the width that these need. GUI thread.
void fitTexts(QWidget& panel, const QCustomSliders& sliders);
