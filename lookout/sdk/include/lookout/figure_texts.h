// SPDX-License-Identifier: Apache-2.0
// How figures are written.
#pragma once

#include <QString>
#include <chrono>

namespace Lookout {

// "0.8 ms"
QString roundTripText(std::chrono::microseconds roundTrip);
// "37.1 MB/s", "999.9 kB/s"
QString bandwidthText(double bytesPerSecond);
// "0.2 s", from one second on in whole ones: "3 s", "2 min 5 s".
QString durationText(std::chrono::milliseconds duration);

}  // namespace Lookout
