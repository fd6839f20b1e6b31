// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/widget.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabWidget>
#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

#include "ky/proxy.h"
#include "support/viewer_on_robot.h"
#include "support/wait.h"
#include "viewer/view/view_image.h"
#include "zu/os.h"

namespace {

// A grey picture: one luminance byte a pixel.
Ky::KyValue greyPicture(int width, int height, std::uint8_t luminance, int seconds) {
  const std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height), luminance);
  return Ky::KyValue::array({width, height, 1, 0, seconds, 0, Ky::KyBinary(pixels), 0});
}

// The viewer's panel on a robot that counts how often it is asked for a picture.
struct Panel {
  explicit Panel(ViewerOnRobot::Camera camera = ViewerOnRobot::Camera::Present) : viewer(camera) {
    if (viewer.device) {
      viewer.device->answer("getImageRemote", [this](const Ky::KyValue::Array&) {
        const int fetch = ++fetches;
        while (hold) std::this_thread::yield();
        return greyPicture(320, 240, luminance, fetch);
      });
    }
    viewer.model().fFps = 30;
  }
  ~Panel() { hold = false; }

  Widget& open() {
    widget = std::make_unique<Widget>(viewer.module, PERISCOPE_ICONS, "robot", nullptr);
    viewer.module->setGui(widget.get());
    viewer.robot.takeCalls();
    viewer.log.clear();
    return *widget;
  }
  QPushButton* button(const QString& toolTip) const {
    for (QPushButton* button : widget->findChildren<QPushButton*>())
      if (button->toolTip() == toolTip) return button;
    return nullptr;
  }
  QImage picture() const { return widget->findChild<ViewImage*>()->grab().toImage(); }

  std::atomic<int> fetches = 0;
  std::atomic<bool> hold = false;             // the robot answers no fetch meanwhile
  std::atomic<std::uint8_t> luminance = 126;  // a grey of 128
  ViewerOnRobot viewer;
  std::unique_ptr<Widget> widget;
};

QStringList toolTips(const Widget& widget) {
  QStringList result;
  for (const QPushButton* button : widget.findChildren<QPushButton*>(Qt::FindDirectChildrenOnly))
    if (button->text().isEmpty()) result << button->toolTip();
  return result;
}

QPushButton* switchCamera(const Widget& widget) {
  for (QPushButton* button : widget.findChildren<QPushButton*>(Qt::FindDirectChildrenOnly))
    if (button->text() == "Switch camera") return button;
  return nullptr;
}

void sendMouse(QWidget* target, QEvent::Type type) {
  const QPointF place(5, 5);
  QMouseEvent event(type, place, target->mapToGlobal(place), Qt::LeftButton,
                    type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                    Qt::NoModifier);
  QApplication::sendEvent(target, &event);
}

// Shows what the icon of a button is.
QImage iconOf(const QPushButton* button) {
  return button->icon().pixmap(QSize(30, 30)).toImage();
}
QImage iconFile(const QString& name) {
  return QIcon(QString(PERISCOPE_ICONS) + "buttons/" + name).pixmap(QSize(30, 30)).toImage();
}

TEST(Widget, HasFourButtonsOnARobotThatCannotStep) {
  Panel panel;
  EXPECT_EQ(toolTips(panel.open()), QStringList({"Play", "Pause", "Record", "Snapshot"}));
}

TEST(Widget, OffersEachStepThatTheRobotKnows) {
  Panel panel;
  panel.viewer.device->answer("nextImage", Ky::KyValue());
  EXPECT_EQ(toolTips(panel.open()), QStringList({"Play", "Pause", "Record", "Snapshot", "Next"}));
  panel.viewer.device->answer("previousImage", Ky::KyValue());
  EXPECT_EQ(toolTips(panel.open()),
            QStringList({"Play", "Pause", "Record", "Snapshot", "Previous", "Next"}));
}

TEST(Widget, StandsOnARobotWithoutACamera) {
  Panel panel(ViewerOnRobot::Camera::Missing);
  Widget& widget = panel.open();
  EXPECT_EQ(toolTips(widget), QStringList({"Play", "Pause", "Record", "Snapshot"}));
  panel.button("Play")->click();
  panel.button("Pause")->click();
}

TEST(Widget, HasIconButtonsOfThirtyPixelsFromLeftToRight) {
  Panel panel;
  panel.viewer.device->answer("nextImage", Ky::KyValue());
  panel.viewer.device->answer("previousImage", Ky::KyValue());
  Widget& widget = panel.open();
  widget.show();
  int left = 0;
  for (const QString& toolTip : toolTips(widget)) {
    const QPushButton* button = panel.button(toolTip);
    EXPECT_EQ(button->size(), QSize(30, 30));
    EXPECT_GT(button->x(), left);
    left = button->x();
    EXPECT_EQ(button->accessibleName(), toolTip);
    EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(button->isEnabled());
  }
}

TEST(Widget, ShowsTheIconOfEachButton) {
  Panel panel;
  panel.viewer.device->answer("nextImage", Ky::KyValue());
  panel.viewer.device->answer("previousImage", Ky::KyValue());
  panel.open();
  for (const char* name : {"Play", "Pause", "Snapshot", "Previous", "Next"}) {
    const QImage icon = iconFile(QString(name).toLower() + ".png");
    EXPECT_EQ(icon.size(), QSize(30, 30)) << name;
    EXPECT_EQ(iconOf(panel.button(name)), icon) << name;
  }
  EXPECT_EQ(iconOf(panel.button("Record")), iconFile("record_start.png"));
}

TEST(Widget, HasSharpIconsForDenseScreens) {
  for (const char* name :
       {"play", "pause", "record_start", "record_stop", "next", "previous", "snapshot"}) {
    const QString file = QString(PERISCOPE_ICONS) + "buttons/" + name;
    EXPECT_EQ(QImage(file + ".png").size(), QSize(30, 30)) << name;
    EXPECT_EQ(QImage(file + "@2x.png").size(), QSize(60, 60)) << name;
  }
}

TEST(Widget, HasTheTabsOnTheLeftAndThePictureOnTheRight) {
  Panel panel;
  Widget& widget = panel.open();
  widget.show();
  EXPECT_EQ(widget.minimumSize(), QSize(950, 660));
  EXPECT_EQ(widget.maximumSize(), QSize(950, 660));
  const auto* tabs = widget.findChild<QTabWidget*>();
  ASSERT_EQ(tabs->count(), 2);
  EXPECT_EQ(tabs->tabText(0), "Video Settings");
  EXPECT_EQ(tabs->tabText(1), "Video Recorder");
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_STREQ(tabs->widget(0)->metaObject()->className(), "VideoSettingsWidget");
  EXPECT_STREQ(tabs->widget(1)->metaObject()->className(), "VideoRecorderSettingsWidget");
  EXPECT_EQ(tabs->widget(1)->minimumSize(), QSize(400, 600));
  const auto* view = widget.findChild<ViewImage*>();
  EXPECT_EQ(view->size(), QSize(640, 480));
  EXPECT_LT(tabs->x(), view->x());
  // Below the picture the buttons, in their middle, and below them the switch.
  const QPushButton* play = panel.button("Play");
  EXPECT_GT(play->y(), view->geometry().bottom());
  EXPECT_GT(switchCamera(widget)->y(), play->geometry().bottom());
}

TEST(Widget, HasItsSlotsInOrder) {
  const QMetaObject& meta = Widget::staticMetaObject;
  QStringList slotNames;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
    EXPECT_EQ(meta.method(i).methodType(), QMetaMethod::Slot);
    slotNames << meta.method(i).methodSignature();
  }
  EXPECT_EQ(slotNames, QStringList({"onVideoStart()", "onVideoStop()", "onVideoRecord()",
                                    "onTakePicture()", "onPreviousImage()", "onNextImage()",
                                    "updateImage()", "updateVideoRecorderView()",
                                    "selectVideoRecorderView()", "selectVideoSettingView()"}));
}

TEST(Widget, FetchesNothingBeforePlay) {
  Panel panel;
  Widget& widget = panel.open();
  EXPECT_FALSE(widget.isPlaying());
  widget.show();
  widget.grab();
  EXPECT_EQ(panel.fetches, 0);
}

TEST(Widget, ShowsTheRobotsPictureOncePlayIsPressed) {
  Panel panel;
  Widget& widget = panel.open();
  widget.show();
  panel.button("Play")->click();
  EXPECT_TRUE(widget.isPlaying());
  EXPECT_TRUE(waitUntil([&] { return widget.framesPainted() > 1; }));
  EXPECT_EQ(panel.picture().pixel(320, 240), qRgb(128, 128, 128));
}

TEST(Widget, TellsTheHostOfItsPicture) {
  Panel panel;
  Widget& widget = panel.open();
  EXPECT_EQ(widget.pictureArea(), widget.findChild<ViewImage*>());
  EXPECT_FALSE(widget.lastPainted().has_value());
  EXPECT_EQ(widget.frameRateWanted(), 30);
  panel.viewer.model().fFps = 5;
  EXPECT_EQ(widget.frameRateWanted(), 5);
  widget.show();
  panel.button("Play")->click();
  EXPECT_TRUE(waitUntil([&] { return widget.lastPainted().has_value(); }));
  EXPECT_EQ(widget.pictureProblem(), "");
  panel.viewer.dropModule();
  EXPECT_TRUE(waitUntil([&] { return widget.frameRateWanted() == 0; }));
  EXPECT_EQ(widget.pictureProblem(), "");
}

TEST(Widget, TellsTheHostWhyNoPictureComes) {
  Panel panel;
  std::atomic<bool> unplugged = true;
  panel.viewer.device->answer("getImageRemote", [&](const Ky::KyValue::Array&) -> Ky::KyValue {
    if (unplugged) throw Ky::KyError("camera 0 has no picture: it is unplugged");
    return greyPicture(320, 240, 126, 1);
  });
  Widget& widget = panel.open();
  widget.show();
  panel.button("Play")->click();
  EXPECT_TRUE(waitUntil(
      [&] { return widget.pictureProblem() == "camera 0 has no picture: it is unplugged"; }));
  unplugged = false;
  EXPECT_TRUE(waitUntil([&] { return widget.pictureProblem().isEmpty(); }));
  panel.widget.reset();
}

TEST(Widget, StopsFetchingAtPause) {
  Panel panel;
  Widget& widget = panel.open();
  panel.hold = true;
  panel.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return panel.fetches == 1; }));
  panel.button("Pause")->click();
  EXPECT_FALSE(widget.isPlaying());
  panel.hold = false;
  EXPECT_FALSE(waitUntil([&] { return panel.fetches > 1; }, std::chrono::milliseconds(200)));
  panel.button("Play")->click();
  EXPECT_TRUE(waitUntil([&] { return panel.fetches > 1; }));
}

// Counts the paints of a widget.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget* watched) { watched->installEventFilter(this); }
  int count() const { return fCount; }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++fCount;
    return false;
  }

 private:
  int fCount = 0;
};

TEST(Widget, PaintsNothingWhilePaused) {
  Panel panel;
  Widget& widget = panel.open();
  widget.show();
  PaintCounter paints(widget.findChild<ViewImage*>());
  panel.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return paints.count() > 2; }));
  panel.button("Pause")->click();
  // Up to two that were under way may still arrive; a viewer that goes on paints five a second.
  const int before = paints.count();
  EXPECT_FALSE(waitUntil([&] { return paints.count() > before + 2; }, std::chrono::seconds(1)));
}

TEST(Widget, PlaysAndPausesForTheHost) {
  Panel panel;
  LookoutWidget& widget = panel.open();
  widget.setPlaying(true);
  EXPECT_TRUE(widget.isPlaying());
  EXPECT_TRUE(waitUntil([&] { return panel.fetches > 0; }));
  widget.setPlaying(false);
  EXPECT_FALSE(widget.isPlaying());
}

// Keeps the camera thread, which reads the frame rate first of all, from being ready: the robot's
// thread has the lock, from the last parameter that the panel reads to the call "release".
void holdCameraThread(Panel& panel) {
  Model& model = panel.viewer.model();
  panel.viewer.device->answer("getParam", [&model](const Ky::KyValue::Array& arguments) {
    constexpr int kHorizontalFlip = 7;
    if (arguments.at(0).asInt() == kHorizontalFlip) model.fParamMutex->writeLock();
    return Ky::KyValue(0);
  });
  panel.viewer.device->answer("release", [&model](const Ky::KyValue::Array&) {
    model.fParamMutex->writeUnlock();
    return Ky::KyValue();
  });
}

TEST(Widget, PlaysThoughPlayWasPressedBeforeTheCameraThreadWasReady) {
  for (const bool pausedAgain : {false, true}) {
    Panel panel;
    holdCameraThread(panel);
    Widget& widget = panel.open();
    panel.button("Play")->click();
    if (pausedAgain) panel.button("Pause")->click();
    panel.viewer.broker->getProxy("KyVideoDevice")->callVoid("release");
    EXPECT_EQ(waitUntil([&] { return panel.fetches > 0; },
                        std::chrono::milliseconds(pausedAgain ? 200 : 20000)),
              !pausedAgain);
    EXPECT_EQ(widget.isPlaying(), !pausedAgain);
  }
}

TEST(Widget, TakesUpTheStateOfAnother) {
  Panel panel;
  panel.viewer.model().fResolution = 0;
  panel.open().findChild<QComboBox*>()->setCurrentIndex(1);
  const QByteArray state = panel.widget->saveState();
  Widget& next = panel.open();
  EXPECT_TRUE(next.restoreState(state));
  EXPECT_EQ(next.findChild<QComboBox*>()->currentIndex(), 1);
}

TEST(Widget, SaysThatItCanNotTakeUpWhatIsNoState) {
  Panel panel;
  Widget& widget = panel.open();
  for (const char* state : {"", "[]", "{\"version\": 2}", "{", "\xFF"})
    EXPECT_FALSE(widget.restoreState(state)) << state;
  EXPECT_TRUE(panel.viewer.robot.calls().empty());
}

TEST(Widget, DoesNothingAtPauseBeforePlay) {
  const zu::os::ClockOverride clock([] { return zu::os::TimeValue{}; });
  Panel panel;
  Widget& widget = panel.open();
  const QImage before = widget.grab().toImage();
  panel.button("Pause")->click();
  EXPECT_EQ(widget.grab().toImage(), before);
  EXPECT_EQ(panel.fetches, 0);
}

TEST(Widget, DoesNothingOnceTheModuleIsGone) {
  Panel panel;
  Widget& widget = panel.open();
  panel.viewer.dropModule();
  panel.button("Play")->click();
  EXPECT_FALSE(widget.isPlaying());
  for (const char* name : {"Record", "Snapshot", "Pause"}) panel.button(name)->click();
  sendMouse(switchCamera(widget), QEvent::MouseButtonPress);
  widget.updateVideoRecorderView();
  widget.updateImage();
  widget.grab();
  EXPECT_TRUE(panel.viewer.robot.calls().empty());
}

TEST(Widget, TakesASnapshotOnTheRobot) {
  Panel panel;
  panel.viewer.robot.add("KyPhotoCapture")->answer("takePicture", Ky::KyValue());
  panel.open();
  panel.button("Snapshot")->click();
  const auto calls = panel.viewer.robot.calls();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.back(),
            "KyPhotoCapture.takePicture(\"/home/tam/recordings/cameras/\", \"lookout_photo\")");
}

TEST(Widget, StepsWithoutAskingTheRobot) {
  Panel panel;
  panel.viewer.device->answer("nextImage", Ky::KyValue());
  panel.viewer.device->answer("previousImage", Ky::KyValue());
  panel.open();
  panel.button("Previous")->click();
  panel.button("Next")->click();
  EXPECT_TRUE(panel.viewer.robot.calls().empty());
}

TEST(Widget, SwitchesTheCameraWhenTheButtonGoesDown) {
  Panel panel;
  Widget& widget = panel.open();
  QPushButton* button = switchCamera(widget);
  sendMouse(button, QEvent::MouseButtonPress);
  const auto calls = panel.viewer.robot.takeCalls();
  EXPECT_NE(std::find(calls.begin(), calls.end(), "KyVideoDevice.setParam(18, 1)"), calls.end())
      << testing::PrintToString(calls);
  sendMouse(button, QEvent::MouseButtonRelease);
  EXPECT_TRUE(panel.viewer.robot.calls().empty());
}

TEST(Widget, BringsTheRecordersTabToTheFrontEitherWay) {
  Panel panel;
  Widget& widget = panel.open();
  auto* tabs = widget.findChild<QTabWidget*>();
  widget.selectVideoSettingView();
  EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "Video Recorder");
  tabs->setCurrentIndex(0);
  widget.selectVideoRecorderView();
  EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "Video Recorder");
}

TEST(Widget, RepaintsForOtherThreads) {
  Panel panel;
  Widget& widget = panel.open();
  widget.show();
  panel.viewer.model().fTimestamp = 5;
  std::thread([&] { static_cast<GCInterface&>(widget).updateImage(); }).join();
  EXPECT_EQ(widget.framesPainted(), 0U);
  EXPECT_TRUE(waitUntil([&] { return widget.framesPainted() == 1; }));
}

TEST(Widget, EndsWhileAFetchIsRunning) {
  Panel panel;
  panel.open();
  panel.hold = true;
  panel.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return panel.fetches == 1; }));
  std::thread robot([&] { panel.hold = false; });
  panel.widget.reset();
  robot.join();
  EXPECT_EQ(panel.fetches, 1);
  // The module has no widget any more and knows it.
  panel.viewer.module->getNext();
  EXPECT_EQ(panel.fetches, 2);
}

TEST(Widget, EndsThoughTheRobotNeverAnswers) {
  Panel panel;
  panel.open();
  panel.hold = true;
  panel.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return panel.fetches == 1; }));
  panel.widget.reset();
  EXPECT_TRUE(panel.hold);
}

TEST(Widget, EndsAtOnceWhenItHasJustBegun) {
  Panel panel;
  for (int i = 0; i < 20; ++i) panel.open().setPlaying(i % 2 == 0);
}

TEST(Widget, EndsItsThreadWhenTheRobotIsLost) {
  Panel panel;
  Widget& widget = panel.open();
  panel.hold = true;
  panel.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return panel.fetches == 1; }));
  emit widget.disconnected(nullptr);
  panel.hold = false;
  EXPECT_FALSE(waitUntil([&] { return panel.fetches > 1; }, std::chrono::milliseconds(200)));
}

TEST(Widget, IsIndependentOfAnotherRobotsWidget) {
  Panel one;
  Panel other;
  one.luminance = 126;
  other.luminance = 40;  // a grey of 27
  one.open().show();
  other.open().show();
  one.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return one.widget->framesPainted() > 1; }));
  EXPECT_EQ(other.fetches, 0);
  EXPECT_FALSE(other.widget->isPlaying());
  other.button("Play")->click();
  ASSERT_TRUE(waitUntil([&] { return other.widget->framesPainted() > 1; }));
  EXPECT_EQ(one.picture().pixel(320, 240), qRgb(128, 128, 128));
  EXPECT_EQ(other.picture().pixel(320, 240), qRgb(27, 27, 27));
  one.widget.reset();
  const int before = other.fetches;
  EXPECT_TRUE(waitUntil([&] { return other.fetches > before; }));
}

}  // namespace
