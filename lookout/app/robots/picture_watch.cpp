// SPDX-License-Identifier: Apache-2.0
#include "robots/picture_watch.h"

#include <QWindow>

#include "lookout/lookout_widget.h"
#include "robots/lost_veil.h"
#include "robots/robot_session.h"
#include "robots/status_line.h"

namespace Lookout {
namespace {

constexpr int kLookMs = 250;

// False behind another tab, out of a scrolled view and in a minimised window: Qt paints none of it.
bool canBeSeen(const QWidget& area) {
  const QWindow* window = area.window()->windowHandle();
  return window != nullptr && window->isExposed() && !area.visibleRegion().isEmpty();
}

// What lies beyond the widget's edge is cut off: no words may stand there.
QRect shownPart(const LookoutWidget& widget) {
  const QWidget& area = *widget.pictureArea();
  const QPoint corner = area.mapFromGlobal(widget.mapToGlobal(QPoint(0, 0)));
  return area.rect() & QRect(corner, widget.size());
}

}  // namespace

PictureWatch::PictureWatch(const RobotSession& session, QObject* parent)
    : QObject(parent), fSession(session) {
  begin();
}

PictureWatch::PictureWatch(const RobotSession& session, const LookoutWidget& view, QObject* parent)
    : QObject(parent), fSession(session), fIsOfView(true), fView(&view) {
  begin();
}

void PictureWatch::begin() {
  connect(&fSession, &RobotSession::changed, this, &PictureWatch::look);
  connect(&fTimer, &QTimer::timeout, this, &PictureWatch::look);
  fTimer.start(kLookMs);
}

PictureWatch::~PictureWatch() {
  delete fVeil.data();
}

const LookoutWidget* PictureWatch::shown() const {
  if (fSession.state() != RobotSession::State::Connected) return nullptr;
  return fIsOfView ? fView.data() : qobject_cast<LookoutWidget*>(fSession.widget());
}

void PictureWatch::look() {
  const LookoutWidget* widget = shown();
  const PictureState before = fReading.state;
  fReading = measure(widget);
  const bool stalled = fReading.state == PictureState::Stalled;
  fProblem = stalled ? widget->pictureProblem() : QString();
  if (stalled)
    veil(widget);
  else
    delete fVeil.data();
  if (stalled || fReading.state != before) emit changed();
}

PictureReading PictureWatch::measure(const LookoutWidget* widget) {
  if (widget != fWidget) fMeter.reset();
  fWidget = widget;
  const QWidget* area = widget != nullptr ? widget->pictureArea() : nullptr;
  if (area == nullptr) return {};
  const quint64 frames = fIsOfView ? widget->framesPainted() : fSession.framesPainted();
  return fMeter.update({widget->isPlaying(), canBeSeen(*area), frames, widget->lastPainted(),
                        widget->frameRateWanted()},
                       PictureMeter::Time::clock::now());
}

void PictureWatch::veil(const LookoutWidget* widget) {
  if (!fVeil) {
    fVeil = new LostVeil(widget->pictureArea());
    fVeil->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  const QString what = standstillText(fReading);
  fVeil->cover(fProblem.isEmpty() ? what : tr("%1: %2").arg(what, fProblem));
  fVeil->setGeometry(shownPart(*widget));
}

}  // namespace Lookout
