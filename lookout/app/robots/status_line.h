// SPDX-License-Identifier: Apache-2.0
// One line about one robot's connection.
#pragma once

#include <QLabel>
#include <chrono>

#include "robots/robot_session.h"

namespace Lookout {

struct RobotStatus {
  RobotSession::State state = RobotSession::State::Connecting;
  std::chrono::microseconds roundTrip{0};  // 0: not known
  double bytesPerSecond = 0;
  double framesPerSecond = 0;  // 0: not shown
};

// "Connected · round trip 0.8 ms · 37.1 MB/s · 29.9 fps"; what is not known is left out.
QString statusText(const RobotStatus& status);

// Shows a status behind a dot of the state's colour. GUI thread.
class StatusLine : public QLabel {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent = nullptr);
  void show(const RobotStatus& status);
  using QLabel::show;
};

}  // namespace Lookout
