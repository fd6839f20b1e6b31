// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_report.h"

#include "lookout/figure_texts.h"
#include "robots/robot_dock.h"

namespace Lookout {
namespace {

using State = RobotSession::State;

QString secondsText(std::chrono::milliseconds time) {
  return QString("%1 s").arg(static_cast<double>(time.count()) / 1000, 0, 'f', 1);
}

QString pictureWords(const PictureReading& picture) {
  switch (picture.state) {
    case PictureState::None:
      return "connected";
    case PictureState::NotPlaying:
      return "not playing";
    case PictureState::Paused:
      return "paused";
    case PictureState::Waiting:
      return "waiting for a picture";
    case PictureState::Live:
      return "live";
    case PictureState::Stalled:
      return "stalled for " + secondsText(picture.standstill);
  }
  return {};
}

QString stateWords(const RobotStatus& status) {
  switch (status.state) {
    case State::Connecting:
      return "connecting";
    case State::Connected:
      return pictureWords(status.picture);
    case State::Silent:
      return "silent";
    case State::Lost:
      return "lost";
    case State::Closed:
      return "closed";
  }
  return {};
}

}  // namespace

QString robotReport(const RobotDock& dock, bool isOneOfSeveral) {
  const RobotStatus status = dock.status();
  const PictureReading& picture = status.picture;
  QStringList parts = {
      "frames painted: " + QString::number(dock.framesPainted()),
      "fps shown: " + QString::number(picture.framesPerSecond, 'f', 1),
      "robot: " + dock.robotName(),
      "state: " + stateWords(status),
      "newest picture: " + (picture.age ? secondsText(*picture.age) + " ago" : QString("none")),
      "round trip: " +
          (status.roundTrip.count() > 0 ? roundTripText(status.roundTrip) : QString("unknown")),
      "bandwidth: " + bandwidthText(status.bytesPerSecond),
  };
  if (isOneOfSeveral) parts << "plug-in: " + dock.pluginName();
  if (!dock.problem().isEmpty()) parts << "problem: " + dock.problem().simplified();
  return parts.join(", ");
}

}  // namespace Lookout
