// SPDX-License-Identifier: Apache-2.0
#include "robots/status_line.h"

#include "lookout/figure_texts.h"

namespace Lookout {
namespace {

using State = RobotSession::State;

// Strong enough for light and dark backgrounds.
constexpr const char* kGreen = "#2e9e44";
constexpr const char* kAmber = "#d98200";
constexpr const char* kRed = "#d32f2f";
constexpr const char* kGrey = "#808080";

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

const char* stateColour(State state) {
  switch (state) {
    case State::Connected:
      return kGreen;
    case State::Lost:
      return kRed;
    default:
      return kAmber;
  }
}

// Of a robot that is connected.
QString pictureText(const PictureReading& picture) {
  switch (picture.state) {
    case PictureState::None:
      return stateText(State::Connected);
    case PictureState::NotPlaying:
      return StatusLine::tr("Not playing");
    case PictureState::Paused:
      return StatusLine::tr("Paused");
    case PictureState::Waiting:
      return StatusLine::tr("Waiting for a picture");
    case PictureState::Live:
      return StatusLine::tr("Live");
    case PictureState::Stalled:
      return standstillText(picture);
  }
  return {};
}

const char* pictureColour(PictureState state) {
  switch (state) {
    case PictureState::None:
    case PictureState::Live:
      return kGreen;
    case PictureState::NotPlaying:
    case PictureState::Paused:
      return kGrey;
    default:
      return kAmber;
  }
}

const char* colourOf(const RobotStatus& status) {
  return status.state == State::Connected ? pictureColour(status.picture.state)
                                          : stateColour(status.state);
}

QStringList liveFigures(const PictureReading& picture) {
  QStringList figures;
  if (picture.framesPerSecond > 0)
    figures << StatusLine::tr("%1 fps").arg(picture.framesPerSecond, 0, 'f', 1);
  if (picture.age)
    figures << StatusLine::tr("newest picture %1 ago").arg(durationText(*picture.age));
  return figures;
}

QString exposedAdvice() {
  return StatusLine::tr(
      "Whoever is on the network between here and the robot can watch, and can command the robot. "
      "To encrypt the connection: make keys on both computers with 'ky keys make', exchange them "
      "with 'ky keys trust', start the robot with --keys instead of --insecure, and connect to it "
      "again, without the tick at \"Without encryption\".");
}

}  // namespace

QString standstillText(const PictureReading& picture) {
  return (picture.age ? StatusLine::tr("No new picture for %1")
                      : StatusLine::tr("No picture for %1"))
      .arg(durationText(picture.standstill));
}

QString lossText(State state, const QString& problem) {
  if (state == State::Lost)
    return StatusLine::tr("Connection lost: %1. Reconnecting...").arg(problem);
  if (state == State::Silent)
    return StatusLine::tr("The robot is silent: %1. Waiting for it...").arg(problem);
  return {};
}

QString statusText(const RobotStatus& status) {
  if (status.state != State::Connected) return stateText(status.state);
  QStringList parts = {pictureText(status.picture)};
  if (status.picture.state == PictureState::Live) parts << liveFigures(status.picture);
  if (!status.streams.isEmpty()) parts << status.streams;
  if (status.roundTrip.count() > 0)
    parts << StatusLine::tr("round trip %1").arg(roundTripText(status.roundTrip));
  parts << bandwidthText(status.bytesPerSecond);
  return parts.join(QString::fromUtf8(" \u00b7 "));
}

StatusLine::StatusLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::RichText);
  setContentsMargins(6, 2, 6, 2);
}

void StatusLine::show(const RobotStatus& status) {
  QString text = QString("<span style=\"color:%1\">\u25cf</span> %2")
                     .arg(colourOf(status), statusText(status).toHtmlEscaped());
  if (status.isExposed)
    text += QString(" \u00b7 <span style=\"color:%1\">%2</span>").arg(kRed, tr("not encrypted"));
  setText(text);
  setToolTip(status.isExposed ? exposedAdvice() : QString());
}

}  // namespace Lookout
