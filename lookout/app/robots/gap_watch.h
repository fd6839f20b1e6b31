// SPDX-License-Identifier: Apache-2.0
// Notices that a widget was made without all of its answers.
#pragma once

#include <QObject>
#include <QTimer>
#include <boost/shared_ptr.hpp>
#include <cstdint>

#include "ky/broker.h"

namespace Lookout {

// A widget asks the robot what it needs, and sets what is to be taken up, once: while it is made.
// Where a module or the line fails just then, it lacks its picture or shows settings that the robot
// does not have, for ever. It is to be made again as soon as everybody answers, but not endlessly:
// a robot that never answers some call has it made kMost times in a row. GUI thread.
class GapWatch : public QObject {
  Q_OBJECT

 public:
  static constexpr int kMost = 3;

  GapWatch();

  // The plug-in is about to make a widget, for which it may be handed this connection, if any.
  void begin(const boost::shared_ptr<Ky::KyBroker>& lent);
  // It has, with this connection, and the widget was given its settings.
  void end(const boost::shared_ptr<Ky::KyBroker>& used);
  // Whether the newest widget lacks answers.
  bool hasGaps() const { return fHasGaps; }
  // There is no widget any more.
  void stop();

 signals:
  // All modules answer, as far as is known; said again from time to time until the next begin().
  void answering();

 private:
  void check();

  boost::shared_ptr<Ky::KyBroker> fLent;
  boost::shared_ptr<Ky::KyBroker> fUsed;
  std::uint64_t fUnansweredBefore = 0;
  bool fHasGaps = false;
  int fInARow = 0;
  QTimer fCheck;
};

}  // namespace Lookout
