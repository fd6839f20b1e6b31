// SPDX-License-Identifier: Apache-2.0
#include "robots/status_line.h"

namespace Lookout {
namespace {

using State = RobotSession::State;

QString stateText(State state) {
  switch (state) {
    case State::Connecting:
      return StatusLine::tr("Connecting");
    case State::Connected:
      return StatusLine::tr("Connected");
    case State::Silent:
      return StatusLine::tr("Silent, waiting");
    case State::Lost:
      return StatusLine::tr("Connection lost, reconnecting");
    case State::Closed:
      return StatusLine::tr("Closed");
  }
  return {};
}

// Strong enough for light and dark backgrounds.
const char* stateColour(State state) {
  switch (state) {
    case State::Connected:
      return "#2e9e44";
    case State::Lost:
      return "#d32f2f";
    default:
      return "#d98200";
  }
}

QString bandwidthText(double bytesPerSecond) {
  if (bytesPerSecond >= 1e6) return StatusLine::tr("%1 MB/s").arg(bytesPerSecond / 1e6, 0, 'f', 1);
  return StatusLine::tr("%1 kB/s").arg(bytesPerSecond / 1e3, 0, 'f', 1);
}

}  // namespace

QString statusText(const RobotStatus& status) {
  QStringList parts = {stateText(status.state)};
  if (status.state == State::Connected) {
    if (status.roundTrip.count() > 0)
      parts << StatusLine::tr("round trip %1 ms")
                   .arg(static_cast<double>(status.roundTrip.count()) / 1000, 0, 'f', 1);
    parts << bandwidthText(status.bytesPerSecond);
    if (status.framesPerSecond > 0)
      parts << StatusLine::tr("%1 fps").arg(status.framesPerSecond, 0, 'f', 1);
  }
  return parts.join(QString::fromUtf8(" \u00b7 "));
}

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::RichText);
  setContentsMargins(6, 2, 6, 2);
}

void StatusLine::show(const RobotStatus& status) {
  setText(QString("<span style=\"color:%1\">\u25cf</span> %2")
              .arg(stateColour(status.state), statusText(status).toHtmlEscaped()));
}

}  // namespace Lookout
