// SPDX-License-Identifier: Apache-2.0
// One robot in the window: from the first attempt to reach it to the closing of its dock.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <boost/shared_ptr.hpp>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ky/broker.h"
#include "lookout/lookout_widget.h"
#include "robots/broker_closer.h"
#include "robots/connection_watcher.h"
#include "robots/gap_watch.h"
#include "robots/robot_memory.h"

class QWidget;
class WidgetInterface;

namespace Lookout {

// Waits for the robot without blocking, has the plug-in make the widget when it answers, says when
// the robot is silent or lost, and has a new widget made when a lost one is back.
//
//   Connecting --answers--> Connected --no sign of life--> Silent --speaks again--> Connected ..
//   Silent, Connected --given up, restarted--> Lost --answers--> Connected ..  any --close-->
//   Closed
//
// A silent robot's widget stays as it is, and does not play meanwhile. A lost one's can't reach the
// robot any more: what is left of it must not act on whoever is there next.
//
// A widget that can't be made is tried again: at once when the robot comes back, and from time to
// time. GUI thread. It blocks for as long as the plug-in's getWidget() and the widget's destructor
// take, each call of theirs at most to its deadline. Where events go on meanwhile, no widget comes
// or goes: one of its slots may be what waits.
class RobotSession : public QObject {
  Q_OBJECT

 public:
  enum class State { Connecting, Connected, Silent, Lost, Closed };

  // `plugin`, `home` and `closer` outlive the session; the widgets become children of `home`.
  // Without `robot` the widget is made at once and stays. `icons` is the folder handed to the
  // plug-in.
  RobotSession(WidgetInterface& plugin, std::optional<Ky::KyAddress> robot, std::string icons,
               QWidget& home, BrokerCloser& closer, QObject* parent = nullptr);
  // Closes. Not while the plug-in is at work, or something waits for a robot.
  ~RobotSession() override;

  // Before start(): the first widget begins like this one.
  void beginWith(const WidgetMemory& before);
  // What the next widget would begin with now.
  WidgetMemory widgetMemory() const;

  // The first widget is told to choose this (LookoutWidget::choose()) once it has taken up its
  // state, before it plays. Before there is one.
  void chooseAtFirst(const QString& setting, const QString& value);
  // Of the broker that the plug-in is going to ask for: the connection on which the session waits
  // for the robot is handed to it then. Before start().
  void setBrokerName(std::string name) { fBrokerName = std::move(name); }
  // Returns at once.
  void start();
  // Deletes the widget, then ends its connection. Idempotent. While the plug-in is at work (it may
  // show a message box), or something waits for a robot (see Ky::KyMeanwhile), closing happens as
  // soon as that has returned: closed() tells.
  void close();

  State state() const { return fState; }
  // Why there is no picture; empty when there is one.
  const QString& problem() const { return fProblem; }
  const std::optional<Ky::KyAddress>& robot() const { return fRobot; }
  // Null while there is none. A lost robot's widget stays until the robot is back.
  QWidget* widget() const { return fWidget; }
  // The kinds of further views that the widget offers, and a new one of a kind, in `parent`; null
  // when there is no widget, or nothing of this kind. It may be deleted by the caller; what is left
  // is deleted when widgetGoing() has been told.
  QStringList viewKinds() const;
  LookoutWidget* makeView(const QString& kind, QWidget& parent);
  // Of the widget's connection; zeros without one.
  Ky::KyStatistics statistics() const;

  // For every broker through which the robot is reached, those that its plug-in makes included; see
  // Ky::KyBroker::setPreference(). Takes effect at once.
  void setPreference(const std::string& name, const std::string& value);
  // Empty where nothing was set.
  std::string preference(const std::string& name) const;
  // See Ky::KyBroker::offers(); false while the robot has not answered.
  bool offers(const std::string& module, const std::string& what) const;

  // Applies to the widget, and to those that are made later. What the user chose in a lost robot's
  // widget holds for the next one.
  void setPlaying(bool playing);
  // Of all widgets of this session together.
  quint64 framesPainted() const;

 signals:
  // The state or the problem changed.
  void changed();
  // A new widget is there, to be shown.
  void widgetMade(QWidget* widget);
  // Something that was to be chosen at first can't be; in words for the user.
  void notChosen(const QString& why);
  // The widget, if there is one, and its views are about to be deleted.
  void widgetGoing();
  void closed();

 private:
  using Broker = boost::shared_ptr<Ky::KyBroker>;

  void startProbe();
  void dropProbe();
  void watch(const Broker& broker, Ky::KyConnection expected);
  void onConnection(Ky::KyConnection connection, const QString& why);
  void pause(const QString& why);
  void goOn();
  void lose(const QString& why);
  void openWidget();
  QWidget* makeWidget(QString& why);
  void keepWidget(QWidget* widget);
  void takeUp(LookoutWidget& widget);
  void choose(LookoutWidget* widget);
  void removeWidget();
  bool hasOpenDialogs() const;
  void fail(const QString& why);
  void retry();
  void makeAgain();
  QByteArray stateFrom(const LookoutWidget& widget) const;
  void prepare(Ky::KyBroker& broker) const;
  void finishClosing();
  void showProbeProblem();
  void setState(State state, const QString& problem);
  LookoutWidget* lookoutWidget() const;

  WidgetInterface& fPlugin;
  const std::optional<Ky::KyAddress> fRobot;
  const std::string fIcons;
  std::string fBrokerName = "LookoutBroker";
  QWidget& fHome;
  BrokerCloser& fCloser;

  State fState = State::Connecting;
  QString fProblem;
  bool fPlaying = false;
  std::map<std::string, std::string> fPreferences;
  QByteArray fWidgetState;  // of the widget before; see LookoutWidget::saveState()
  QByteArray fTakenUp;      // what this one made of it
  std::vector<std::pair<QString, QString>> fChoices;  // settings and values, still to be chosen
  GapWatch fGaps;
  bool fMaking = false;  // the plug-in is at work
  quint64 fFramesBefore = 0;
  QPointer<QWidget> fWidget;
  std::vector<QPointer<LookoutWidget>> fViews;  // of the widget

  Broker fProbe;   // waits for the robot; null once the widget's own broker does, or is it
  Broker fBroker;  // the widget's; null when its plug-in opens none
  std::unique_ptr<ConnectionWatcher> fWatcher;  // of one of the two
  QTimer fRetry;
  int fRetryMs;  // how long until the next attempt
  QTimer fProbeCheck;
};

}  // namespace Lookout
