// SPDX-License-Identifier: Apache-2.0
// Base of the widgets that Lookout docks.
#pragma once

#include <QByteArray>
#include <QString>
#include <QWidget>
#include <chrono>
#include <optional>

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
  // again on another widget of the same plug-in for the same robot. The host asks a new widget, one
  // whose robot is lost and one that is about to go, and gives what is no more as it was at first
  // to the next one, perhaps in another run of the program, before that is told to play.
  // restoreState() is false, and changes nothing, for what is no state of this widget's, such as
  // one of another version. The defaults have no state.
  virtual QByteArray saveState() const { return {}; }
  virtual bool restoreState(const QByteArray& state);

  // The host measures the picture for its status line and report, and veils it when it stands still
  // while it plays. Widgets without pictures keep the defaults.
  //
  // Frames painted since the widget was made, each new picture counted once, and when the newest
  // was painted.
  virtual quint64 framesPainted() const { return 0; }
  virtual std::optional<std::chrono::steady_clock::time_point> lastPainted() const { return {}; }
  // How many pictures a second it asks the robot for; 0: not known.
  virtual double frameRateWanted() const { return 0; }
  // Why no picture comes, in words for the user; empty when one came, or when nobody knows.
  virtual QString pictureProblem() const { return {}; }
  // The part of it that shows the pictures, to be veiled: it takes no input. Null without pictures.
  virtual QWidget* pictureArea() const { return nullptr; }

 signals:
  // The connection to the robot is lost. The widget gets no more data; when the robot is back, the
  // host asks the plug-in for a new one.
  void disconnected(WidgetInterface* plugin);
};
