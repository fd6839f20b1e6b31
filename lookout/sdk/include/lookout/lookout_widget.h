// SPDX-License-Identifier: Apache-2.0
// Base of the widgets that Lookout docks.
#pragma once

#include <QByteArray>
#include <QWidget>

class WidgetInterface;

// GUI thread only.
class LookoutWidget : public QWidget {
  Q_OBJECT

 public:
  explicit LookoutWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
  ~LookoutWidget() override;

  // Starts or pauses what the widget shows; the host calls it for `--play` and after a
  // reconnection. The default does nothing.
  virtual void setPlaying(bool playing);
  virtual bool isPlaying() const { return false; }

  // What the user has set, but for playing, in whatever form the widget likes, and the same set
  // again on another widget of the same plug-in for the same robot. The host asks a widget whose
  // robot is lost, and gives it to the next one before that is told to play. restoreState() is
  // false, and changes nothing, for what is no state of this widget's, such as one of another
  // version. The defaults have no state.
  virtual QByteArray saveState() const { return {}; }
  virtual bool restoreState(const QByteArray& state);

  // For the host's status line and report; widgets without pictures keep the zeros. Frames painted
  // since the widget was made, each new picture counted once; and the rate shown now, per second.
  virtual quint64 framesPainted() const { return 0; }
  virtual double shownFrameRate() const { return 0; }

 signals:
  // The connection to the robot is lost. The widget gets no more data; when the robot is back, the
  // host asks the plug-in for a new one.
  void disconnected(WidgetInterface* plugin);
};
