// SPDX-License-Identifier: Apache-2.0
// Looks after the picture of one robot.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include "lookout/picture_meter.h"

class LookoutWidget;

namespace Lookout {

class LostVeil;
class RobotSession;

// Measures the picture of a session's widget, or of one of its views, where it is painted, and
// veils it for as long as it plays and nothing new comes. GUI thread.
class PictureWatch : public QObject {
  Q_OBJECT

 public:
  // The session outlives it.
  explicit PictureWatch(const RobotSession& session, QObject* parent = nullptr);
  // Of this view, which the session made.
  PictureWatch(const RobotSession& session, const LookoutWidget& view, QObject* parent = nullptr);
  ~PictureWatch() override;

  const PictureReading& reading() const { return fReading; }
  // Why the picture stands still, as far as that is known; empty while it doesn't.
  const QString& problem() const { return fProblem; }

 signals:
  // The picture's state changed, or it still stands still.
  void changed();

 private:
  void begin();
  void look();
  const LookoutWidget* shown() const;
  PictureReading measure(const LookoutWidget* widget);
  void veil(const LookoutWidget* widget);

  const RobotSession& fSession;
  const bool fIsOfView = false;
  const QPointer<const LookoutWidget> fView;
  QPointer<const LookoutWidget> fWidget;  // whose picture is measured
  PictureMeter fMeter;
  PictureReading fReading;
  QString fProblem;
  QPointer<LostVeil> fVeil;  // goes with the picture that it covers
  QTimer fTimer;
};

}  // namespace Lookout
