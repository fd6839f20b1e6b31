// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/widget.h"

#include <QDeadlineTimer>
#include <QHBoxLayout>
#include <QIcon>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

#include "ky/error.h"
#include "ky/meanwhile.h"
#include "ky/proxy.h"
#include "viewer/acquisition/camera_thread.h"
#include "viewer/core/module.h"
#include "viewer/recording/videorecordersettings_widget.h"
#include "viewer/settings/camera_reads.h"
#include "viewer/settings/videosettings_widget.h"
#include "viewer/view/view_image.h"

const QString Widget::fPlayImg = "buttons/play.png";
const QString Widget::fPauseImg = "buttons/pause.png";
const QString Widget::fRecordStartImg = "buttons/record_start.png";
const QString Widget::fRecordStopImg = "buttons/record_stop.png";
const QString Widget::fNextImg = "buttons/next.png";
const QString Widget::fPreviousImg = "buttons/previous.png";
const QString Widget::fSnapshotImg = "buttons/snapshot.png";

namespace {

// Gives the button row all spare height of its column.
constexpr int kRowStretch = 132;

constexpr const char* kVideoDevice = "KyVideoDevice";
constexpr const char* kPreviousImage = "previousImage";
constexpr const char* kNextImage = "nextImage";

// Whether the robot's video device can step through stored images is told by its help.
bool videoDeviceKnows(const Module& module, const char* method) {
  try {
    module.getParentBroker()->getProxy(kVideoDevice)->callVoid("getMethodHelp", method);
    return true;
  } catch (const Ky::KyError&) {
    return false;
  }
}

// It may be in a call to the robot.
void waitFor(QThread& thread) {
  using Clock = std::chrono::steady_clock;
  Ky::KyWait wait([] { return Widget::tr("the camera thread").toStdString(); });
  const auto end = Clock::now() + std::chrono::seconds(5);
  while (!thread.wait(QDeadlineTimer(wait.until(end))) && Clock::now() < end) wait.work();
}

}  // namespace

Widget::Widget(boost::shared_ptr<Module> module, const QString& iconPath,
               const QString& robotAddress, QWidget* parent)
    : LookoutWidget(parent, Qt::WindowFlags()),
      fModule(module),
      fRobotAddress(robotAddress),
      fIconPath(iconPath) {
  auto* layout = new QHBoxLayout(this);
  fTabWidget = xMakeTabs(module);
  layout->addWidget(fTabWidget);
  layout->addLayout(xMakeRightColumn(module));
  setFixedSize(950, 660);
  xStartCameraThread(module);
}

Ky::KyReads Widget::reads() {
  Ky::KyReads reads = readsOfNewPanel(Model::fDefaultCamera);
  for (Ky::KyRead& read : Module::presenceReads()) reads.push_back(std::move(read));
  reads.push_back(Ky::KyRead::presenceOf(kVideoDevice));
  for (const char* method : {kPreviousImage, kNextImage})
    reads.push_back({kVideoDevice, "getMethodHelp", {method}});
  return reads;
}

Widget::~Widget() {
  fCameraThread->exit(0);
  waitFor(*fCameraThread);
  delete fCameraThread;
  if (const auto module = fModule.lock()) module->setGui(nullptr);
}

QTabWidget* Widget::xMakeTabs(const boost::shared_ptr<Module>& module) {
  auto* tabs = new QTabWidget(this);
  fVideoSettings = new VideoSettingsWidget(module, tabs);
  fVideoRecorderSettings = new VideoRecorderSettingsWidget(module, tabs);
  tabs->insertTab(0, fVideoSettings, "Video Settings");
  tabs->insertTab(1, fVideoRecorderSettings, "Video Recorder");
  tabs->setCurrentWidget(fVideoSettings);
  return tabs;
}

void Widget::xAddButtons(QBoxLayout* row, const boost::shared_ptr<Module>& module) {
  xAddButton(row, fPlayImg, "Play", SLOT(onVideoStart()));
  xAddButton(row, fPauseImg, "Pause", SLOT(onVideoStop()));
  fRecordButton = xAddButton(row, fRecordStartImg, "Record", SLOT(onVideoRecord()));
  xAddButton(row, fSnapshotImg, "Snapshot", SLOT(onTakePicture()))
      ->setEnabled(module->activateDetection("visionToolbox", -1));
  if (videoDeviceKnows(*module, kPreviousImage))
    xAddButton(row, fPreviousImg, "Previous", SLOT(onPreviousImage()));
  if (videoDeviceKnows(*module, kNextImage)) xAddButton(row, fNextImg, "Next", SLOT(onNextImage()));
}

QPushButton* Widget::xAddButton(QBoxLayout* row, const QString& icon, const QString& toolTip,
                                const char* slot) {
  auto* button = new QPushButton(QIcon(fIconPath + icon), QString(), this);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  row->addWidget(button);
  connect(button, SIGNAL(clicked()), this, slot);
  button->setFixedSize(30, 30);
  button->setIconSize({22, 22});
  return button;
}

QBoxLayout* Widget::xMakeRightColumn(const boost::shared_ptr<Module>& module) {
  auto* column = new QVBoxLayout;
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  xAddButtons(row, module);
  row->addStretch(1);

  fViewImage = new ViewImage(module->model(), this);
  fViewImage->init();
  column->addWidget(fViewImage);
  column->addLayout(row, kRowStretch);

  auto* switchCamera = new QPushButton("Switch camera", this);
  connect(switchCamera, SIGNAL(pressed()), fVideoSettings, SLOT(onSwitchCameraSelected()));
  column->addWidget(switchCamera, 0, Qt::AlignHCenter | Qt::AlignVCenter);
  return column;
}

void Widget::xStartCameraThread(const boost::shared_ptr<Module>& module) {
  fCameraThread = new CameraThread(module, module->model());
  // Play may have been pressed before the thread could hear of it.
  fCameraThread->onReady([this] {
    if (fPlaying) fCameraThread->setEnableGetImage(true);
  });
  fCameraThread->start(QThread::InheritPriority);
  connect(this, SIGNAL(disconnected(WidgetInterface*)), fCameraThread, SLOT(quit()));
}
