// SPDX-License-Identifier: Apache-2.0
#include "lookout/figure_texts.h"

#include <QCoreApplication>

namespace Lookout {
namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Lookout::FigureTexts)
};

}  // namespace

QString roundTripText(std::chrono::microseconds roundTrip) {
  return Texts::tr("%1 ms").arg(static_cast<double>(roundTrip.count()) / 1000, 0, 'f', 1);
}

QString bandwidthText(double bytesPerSecond) {
  if (bytesPerSecond >= 1e6) return Texts::tr("%1 MB/s").arg(bytesPerSecond / 1e6, 0, 'f', 1);
  return Texts::tr("%1 kB/s").arg(bytesPerSecond / 1e3, 0, 'f', 1);
}

QString durationText(std::chrono::milliseconds duration) {
  // Tenths are cut off, not rounded: there is no "1.0 s" before a second is over.
  if (duration < std::chrono::seconds(1)) return Texts::tr("0.%1 s").arg(duration.count() / 100);
  const auto seconds = duration.count() / 1000;
  if (seconds < 60) return Texts::tr("%1 s").arg(seconds);
  return Texts::tr("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
}

}  // namespace Lookout
