// SPDX-License-Identifier: Apache-2.0
// The place in the window of a further view of what a robot's widget shows.
#pragma once

#include <QDockWidget>
#include <QPointer>
#include <memory>

#include "robots/picture_watch.h"
#include "robots/robot_session.h"

class QLabel;
class QStackedWidget;

namespace Lookout {

class FullScreen;
class LostVeil;

// Shows a view, or why there is none, and veils it like the robot's own dock. When the robot comes
// back with another widget, it goes on with another view of the same kind, in the same place, which
// may be the whole screen. Closing it ends the view, then deletes the dock. GUI thread.
class ViewDock : public QDockWidget {
  Q_OBJECT

 public:
  // `session` outlives it. `owner` is what the robot's own dock is called; number is 1, 2, .. among
  // its views of this kind. The first view begins with `state`.
  ViewDock(RobotSession& session, const QString& owner, QString kind, int number, QByteArray state,
           QWidget* parent = nullptr);
  ~ViewDock() override;
  // Asks for the view, once the dock has its place.
  void start() { makeView(); }

  const QString& kind() const { return fKind; }
  int number() const { return fNumber; }
  // Null while there is none.
  LookoutWidget* view() const { return fView; }
  // What the next view would begin with.
  QByteArray viewState() const;
  // Of all its views together.
  quint64 framesPainted() const;
  const PictureReading& reading() const;
  // Why its picture stands still; see PictureWatch::problem().
  QString problem() const;
  // It was closed, or its robot was: it goes as soon as it can.
  bool isClosing() const;

  // Whether the view fills a screen, that of the dock; its place is kept meanwhile.
  bool fillsScreen() const { return fScreen != nullptr; }
  void setFillsScreen(bool fills);
  // With the keyboard.
  void bringToFront();
  bool holdsFocus() const;
  // Of the tabs that it is in, if any.
  bool isInFront() const { return isVisible() && !visibleRegion().isEmpty(); }
  // What the robot's own dock has for a title now, with the connection's state.
  void setOwnerTitle(const QString& title);

 signals:
  // The session's widget has no view of this kind; the dock closes.
  void notOffered();
  // To the view's owner: the view wants another one to be shown, see LookoutWidget::viewWanted().
  void viewWanted(const QString& kind, bool another);
  // The user has closed it.
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void buildPlace();
  void makeView();
  void meet(LookoutWidget& view);
  void losePicture();
  void showState();
  void showTitle();
  void removeWhenIdle();

  RobotSession& fSession;
  const QString fKind;
  const int fNumber;
  QString fOwnerTitle;
  QByteArray fState;  // of the view before
  quint64 fFramesBefore = 0;
  bool fIsClosing = false;
  QStackedWidget* fPlace = nullptr;  // in the dock: the body, or what stands there instead
  QWidget* fElsewhere = nullptr;     // says that the body fills a screen
  QPointer<QStackedWidget> fBody;    // the view or the placeholder, below the veil
  QLabel* fPlaceholder = nullptr;
  LostVeil* fVeil = nullptr;
  QPointer<LookoutWidget> fView;
  std::unique_ptr<PictureWatch> fPicture;  // null without a view
  std::unique_ptr<FullScreen> fScreen;     // null while the body is in the dock
};

}  // namespace Lookout
