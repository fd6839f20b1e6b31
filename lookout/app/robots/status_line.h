// SPDX-License-Identifier: Apache-2.0
// One line about one robot's connection and picture.
#pragma once

#include <QLabel>
#include <chrono>

#include "lookout/picture_meter.h"
#include "robots/robot_session.h"

namespace Lookout {

struct RobotStatus {
  RobotSession::State state = RobotSession::State::Connecting;
  std::chrono::microseconds roundTrip{0};  // 0: not known
  double bytesPerSecond = 0;
  PictureReading picture;
  bool isExposed = false;  // the connection crosses a network without encryption
  QString streams = {};    // what comes without being asked for: "exact", "H.264, 1.4 Mbit/s"
};

// "Live · 29.9 fps · newest picture 0.1 s ago · exact · round trip 0.8 ms · 37.1 MB/s"; what is not
// known is left out.
QString statusText(const RobotStatus& status);

// "No new picture for 3 s" of one that is stalled.
QString standstillText(const PictureReading& picture);

// What is said over a picture whose robot is silent or lost; empty of any other.
QString lossText(RobotSession::State state, const QString& problem);

// Shows a status behind a dot of the state's colour: green while all is well; and, of a connection
// that others may listen to, that it is not encrypted. GUI thread.
class StatusLine : public QLabel {
  Q_OBJECT

 public:
  explicit StatusLine(QWidget* parent = nullptr);
  void show(const RobotStatus& status);
  using QLabel::show;
};

}  // namespace Lookout
