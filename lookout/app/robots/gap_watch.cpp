// SPDX-License-Identifier: Apache-2.0
#include "robots/gap_watch.h"

#include "zu/log.h"

namespace Lookout {
namespace {

constexpr int kCheckMs = 300;

std::uint64_t unanswered(const boost::shared_ptr<Ky::KyBroker>& broker) {
  return broker ? broker->statistics().unanswered : 0;
}

}  // namespace

GapWatch::GapWatch() {
  fCheck.setInterval(kCheckMs);
  connect(&fCheck, &QTimer::timeout, this, &GapWatch::check);
}

void GapWatch::begin(const boost::shared_ptr<Ky::KyBroker>& lent) {
  stop();
  fLent = lent;
  fUnansweredBefore = unanswered(lent);
}

void GapWatch::end(const boost::shared_ptr<Ky::KyBroker>& used) {
  const std::uint64_t before = used == fLent ? fUnansweredBefore : 0;
  const std::uint64_t missing = unanswered(used) - before;
  fLent.reset();
  fUsed = used;
  fHasGaps = missing > 0;
  if (!fHasGaps) {
    fInARow = 0;
  } else if (++fInARow <= kMost) {
    zu::log::warning("lookout", "session")
        << used->address().toString() << ": " << missing
        << " answers are missing; the view is made again when the robot answers";
    fCheck.start();
  }
}

void GapWatch::stop() {
  fCheck.stop();
  fLent.reset();
  fUsed.reset();
  fHasGaps = false;
}

void GapWatch::check() {
  const bool isAnswering =
      fUsed && fUsed->connection() == Ky::KyConnection::Connected && fUsed->statistics().mute == 0;
  if (isAnswering) emit answering();
}

}  // namespace Lookout
