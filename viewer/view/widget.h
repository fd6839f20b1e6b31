// SPDX-License-Identifier: Apache-2.0
// The viewer's panel, which the plug-in hands to the host.
#pragma once

#include <QString>
#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "ky/ahead.h"
#include "lookout/lookout_widget.h"
#include "viewer/core/gc_interface.h"
#include "viewer/dialogs/notice.h"

class CameraThread;
class Module;
class QBoxLayout;
class QJsonObject;
class QPushButton;
class QTabWidget;
class ViewImage;
class VideoRecorderSettingsWidget;
class VideoSettingsWidget;
struct PhotoReport;

// The settings' tabs on the left, the picture with its buttons on the right. 950 x 660 pixels,
// fixed. Owns the camera thread, which it starts idle: Play lets it fetch.
//
// The module is not kept alive: once it is gone, Play and Record do nothing. GUI thread only, but
// for updateImage(). The destructor waits for a fetch that is running.
class Widget : public LookoutWidget, public GCInterface {
  Q_OBJECT

 public:
  // iconPath is put in front of the icons' names as it is, so it ends with a slash; robotAddress is
  // where recordings are downloaded from.
  Widget(boost::shared_ptr<Module> module, const QString& iconPath, const QString& robotAddress,
         QWidget* parent);
  ~Widget() override;
  // What building one asks the robot, its module included.
  static Ky::KyReads reads();

  // As if Play or Pause had been pressed, and which of them was the last.
  void setPlaying(bool playing) override;
  bool isPlaying() const override { return fPlaying; }
  // The settings' tab, and the film that this widget records; as JSON,
  // {"version": 1, "settings": ..., "film": {"name": ..., "path": ...}}.
  //
  // A film goes on when the robot is lost. Whoever is given the state goes on with it: shows that
  // it is recorded, stops it, and ends it when it is closed. A film of anybody else is left alone:
  // who only looks at a robot shall not end what another records there.
  QByteArray saveState() const override;
  bool restoreState(const QByteArray& state) override;
  quint64 framesPainted() const override;
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const override;
  double frameRateWanted() const override;
  QString pictureProblem() const override;
  QWidget* pictureArea() const override;
  // What VideoSettingsWidget::choose() knows.
  QString choose(const QString& setting, const QString& value) override;
  // "stage": the picture as large as there is room. "files": the robot's photos and films.
  QStringList viewKinds() const override;
  LookoutWidget* makeView(const QString& kind, QWidget* parent) override;

 public slots:
  void onVideoStart();
  void onVideoStop();
  void onVideoRecord();
  void onTakePicture();
  void onPreviousImage();
  void onNextImage();
  void updateImage() override;
  void updateVideoRecorderView() override;
  // Both bring the recorder's tab to the front.
  void selectVideoRecorderView() override;
  void selectVideoSettingView() override;

 protected:
  // On the picture, and the key S: a stage.
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QTabWidget* xMakeTabs(const boost::shared_ptr<Module>& module);
  void xAddButtons(QBoxLayout* row, const boost::shared_ptr<Module>& module);
  QPushButton* xAddButton(QBoxLayout* row, const QString& icon, const QString& toolTip,
                          const char* slot);
  QBoxLayout* xMakeRightColumn(const boost::shared_ptr<Module>& module);
  void xTellOfPhoto(const PhotoReport& photo);
  QJsonObject xFilm() const;
  void xTakeUpFilm(const QJsonObject& film);
  // Below the buttons, where there is room.
  void xSay(Notice::Kind kind, const QString& text);
  // Asks where to put a file of the robot's and fetches it there.
  void xDownload(const QString& file);
  void xStartCameraThread(const boost::shared_ptr<Module>& module);

  static const QString fPlayImg;
  static const QString fPauseImg;
  static const QString fRecordStartImg;
  static const QString fRecordStopImg;
  static const QString fNextImg;
  static const QString fPreviousImg;
  static const QString fSnapshotImg;

  boost::weak_ptr<Module> fModule;
  ViewImage* fViewImage = nullptr;
  QPushButton* fRecordButton = nullptr;
  VideoSettingsWidget* fVideoSettings = nullptr;
  VideoRecorderSettingsWidget* fVideoRecorderSettings = nullptr;
  QTabWidget* fTabWidget = nullptr;
  QString fRobotAddress;
  QString fIconPath;
  CameraThread* fCameraThread = nullptr;
  std::atomic<bool> fPlaying = false;  // changed before the camera thread is told
  Notice* fNotice = nullptr;           // null until there is something to say
};
