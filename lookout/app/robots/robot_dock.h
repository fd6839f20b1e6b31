// SPDX-License-Identifier: Apache-2.0
// A robot's place in the window.
#pragma once

#include <QDockWidget>
#include <QTimer>

#include "plugins/plugin_catalog.h"
#include "robots/bandwidth.h"
#include "robots/picture_watch.h"
#include "robots/robot_session.h"
#include "robots/status_line.h"

class QLabel;
class QMenu;
class QScrollArea;
class QStackedWidget;
class QToolButton;

namespace Lookout {

class LostVeil;
class RobotViews;
class ViewDock;
class WidgetKeeper;

// Shows one robot's widget, or why there is none, above a line about its connection. Closing it
// ends the session with all further views, then deletes the dock. GUI thread.
class RobotDock : public QDockWidget {
  Q_OBJECT

 public:
  // `plugin`, which was loaded, and `closer` outlive the dock. Without `robot` it is for a widget
  // that needs none.
  RobotDock(const Plugin& plugin, std::optional<Ky::KyAddress> robot, const QString& icons,
            BrokerCloser& closer, QWidget* parent = nullptr);
  ~RobotDock() override;

  // Lets the robot's widget begin as it was left last time, unless `startsFresh`, and keeps how it
  // is left this time. Before the session starts.
  void remember(bool startsFresh);
  // Opens the views that were open last time, where that is so. Once the dock has its place.
  void openViewsOfBefore();
  // Keeps how it is now; closing the dock does so too, unless this was said to be the end.
  void keep() const;
  void keepForGood();

  RobotSession& session() const { return *fSession; }
  RobotViews& views() const { return *fViews; }
  // By the widget or by one of its views, whichever painted the most.
  quint64 framesPainted() const;
  // What its status line shows. Of the picture that can be seen: a view's, where the widget's
  // can't.
  RobotStatus status() const;
  // Why the picture stands still, or why there is none; empty while all is well, or not known.
  QString problem() const;
  // "HOST:PORT"; empty without a robot.
  QString robotName() const;
  const QString& pluginName() const { return fPluginName; }
  // "PLUG-IN HOST:PORT"
  QString name() const;
  // Whether the connection crosses a network without encryption; its title says so.
  bool isExposed() const { return fExposed; }
  // Has a button beside the status line open this menu, which becomes the dock's.
  void offer(QMenu* plugins);
  // The size in which it shows its widget whole.
  QSize wantedSize() const;

 signals:
  // The first, or one that follows it.
  void widgetShown(bool isFirst);
  // It is about to be closed, and everything is still there.
  void closing();
  // The session has ended; the dock is about to go.
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildBody();
  QString title() const;
  void updateExposed();
  void showWidget(QWidget* widget);
  void showState();
  void measure();
  void showStatus();
  const ViewDock* viewInSight() const;

  const QString fPluginName;
  bool fExposed = false;
  bool fHadWidget = false;
  bool fStartsFresh = true;
  QStackedWidget* fPages = nullptr;
  QLabel* fPlaceholder = nullptr;
  QScrollArea* fScroll = nullptr;
  LostVeil* fVeil = nullptr;
  StatusLine* fStatus = nullptr;
  QToolButton* fPlugins = nullptr;
  Bandwidth fBandwidth;
  double fBytesPerSecond = 0;
  QTimer fStatusTimer;
  std::unique_ptr<RobotSession> fSession;
  std::unique_ptr<RobotViews> fViews;
  std::unique_ptr<PictureWatch> fPicture;
  std::unique_ptr<WidgetKeeper> fKeeper;  // null: nothing is remembered
};

}  // namespace Lookout
