// SPDX-License-Identifier: Apache-2.0
// From a decoder's planes to the interleaved pixels of an image record.
#pragma once

#include "ky/binary.h"

struct AVFrame;

namespace Ky {

// `colorSpace`: 0, for which only the luminance is read, or 9 or 10, for which `frame` is 4:2:2
// with 8 bits and of even width.
KyBinary interleaved(const AVFrame& frame, int colorSpace);

}  // namespace Ky
