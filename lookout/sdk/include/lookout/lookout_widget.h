// SPDX-License-Identifier: Apache-2.0
// Base of the widgets that Lookout docks.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
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

  // Does what a user's clicks would do: sets something by a name and value that are the widget's,
  // such as "size" to "640x480". Empty when it is done, or else why it can't be, for the user.
  virtual QString choose(const QString& setting, const QString& value);

  // Further views of what this widget shows, each for a dock of its own: their kinds, such as
  // "stage", and a new one of a kind, or null when there is none of it. Each call makes another. A
  // view is the host's, which deletes it before this widget, and asks the widget that comes after a
  // loss for another one, which begins with the state of the one before. Its window title is the
  // dock's.
  virtual QStringList viewKinds() const { return {}; }
  virtual LookoutWidget* makeView(const QString& kind, QWidget* parent);

 signals:
  // To a widget: the user wants to see a view of this kind. The host brings one to the front, or
  // opens the first; where `another`, it opens one more.
  void viewWanted(const QString& kind, bool another);
  // To a view: the user wants it to fill the screen, or to be back in its dock, or to be closed.
  void fullScreenWanted(bool wanted);
  void closeWanted();
  // The connection to the robot is lost. The widget gets no more data; when the robot is back, the
  // host asks the plug-in for a new one.
  void disconnected(WidgetInterface* plugin);
};
