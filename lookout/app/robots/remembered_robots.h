// SPDX-License-Identifier: Apache-2.0
// The robots that were used before, kept in the settings.
#pragma once

#include <QStringList>

namespace Lookout {

// "HOST:PORT" texts, the most recent first, at most 20, and which of them are reached without
// encryption. GUI thread; reads and writes the application's QSettings at each call.
class RememberedRobots {
 public:
  static constexpr int kMost = 20;

  static QStringList all();
  // False also for robots that are not remembered.
  static bool isUnencrypted(const QString& robot);
  // Moves it to the front, or adds it there.
  static void remember(const QString& robot, bool unencrypted = false);
  // And how it was shown.
  static void forget(const QString& robot);
};

}  // namespace Lookout
