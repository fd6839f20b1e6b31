// SPDX-License-Identifier: Apache-2.0
// What the values of some parameters mean as factors, and which value a factor needs. A factor of
// one is the initial value's and changes nothing.
#pragma once

#include <cmath>

namespace robot {

// How much brighter each channel becomes.
inline double lightOfExposure(double exposure) {
  return exposure / 255;
}
inline double exposureOfLight(double light) {
  return light * 255;
}

// Model 1 counts from one in steps of 1/16, model 2 in steps of 1/32.
inline double lightOfGain(int model, double gain) {
  return model == 1 ? (16 + gain) / 48 : gain / 32;
}
inline double gainOfLight(int model, double light) {
  return model == 1 ? light * 48 - 16 : light * 32;
}

// How much brighter one channel becomes.
inline double factorOfChroma(double chroma) {
  return (128 + chroma) / 256;
}
inline double chromaOfFactor(double factor) {
  return factor * 256 - 128;
}

// Red is multiplied by it and blue divided.
inline double warmthOfWhiteBalance(double whiteBalance) {
  return std::exp2((whiteBalance + 78) / 84);
}
inline double whiteBalanceOfWarmth(double warmth) {
  return std::log2(warmth) * 84 - 78;
}

// Sixths of a stop.
inline double lightOfCorrection(double correction) {
  return std::exp2(correction / 6);
}

}  // namespace robot
