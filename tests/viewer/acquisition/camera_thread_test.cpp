// SPDX-License-Identifier: Apache-2.0
#include "viewer/acquisition/camera_thread.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>

#include "support/wait.h"
#include "viewer.h"

namespace {

using Lines = std::vector<std::string>;

// Holds the robot's answer back until the test lets it go.
class Gate {
 public:
  void pass() {
    std::unique_lock lock(fMutex);
    fIsReached = true;
    fChanged.wait(lock, [this] { return fIsOpen; });
  }
  void open() {
    const std::lock_guard lock(fMutex);
    fIsOpen = true;
    fChanged.notify_all();
  }
  bool isReached() {
    const std::lock_guard lock(fMutex);
    return fIsReached;
  }

 private:
  std::mutex fMutex;
  std::condition_variable fChanged;
  bool fIsOpen = false;
  bool fIsReached = false;
};

// Runs functions in the thread in which it lives. What it carries is handed over under its own
// lock: the thread sanitizer can't see Qt's.
class Messenger : public QObject {
  Q_OBJECT

 public:
  void run(std::function<void()> function) {
    std::packaged_task<void()> task(std::move(function));
    auto done = task.get_future();
    {
      const std::lock_guard lock(fMutex);
      fTask = std::move(task);
    }
    QMetaObject::invokeMethod(this, "runTask", Qt::QueuedConnection);
    done.get();
  }

 private slots:
  void runTask() {
    std::packaged_task<void()> task;
    {
      const std::lock_guard lock(fMutex);
      task = std::move(fTask);
    }
    task();
  }

 private:
  std::mutex fMutex;
  std::packaged_task<void()> fTask;
};

// A viewer whose thread runs.
struct Polling : Viewer {
  Polling() {
    setRecord(record(4, 2, 0, pixels(8)));
    model->fFps = Model::fMaxFps;
    thread = std::make_unique<CameraThread>(module, model);
  }
  ~Polling() {
    if (thread) thread->quit();
    thread.reset();
  }
  // Returns once polling can be enabled.
  void start() {
    std::promise<void> ready;
    thread->onReady([&] { ready.set_value(); });
    thread->start();
    messenger.moveToThread(thread.get());
    ready.get_future().get();
  }
  // Runs `function` between two events of the camera thread.
  void inThread(std::function<void()> function) { messenger.run(std::move(function)); }
  bool isPolling() {
    bool result = false;
    inThread([&] { result = thread->isPolling(); });
    return result;
  }
  int interval() {
    int result = 0;
    inThread([&] { result = thread->interval(); });
    return result;
  }
  void tick() {
    inThread([&] { thread->onTimeOut(); });
  }
  bool waitForFetches(int more) {
    const int wanted = gui.fUpdates + more;
    return waitUntil([&] { return gui.fUpdates >= wanted; });
  }
  void holdImagesAt(Gate& gate) {
    device->answer("getImageRemote", [&gate](const Ky::KyValue::Array&) {
      gate.pass();
      return record(4, 2, 0, pixels(8));
    });
  }
  void destroyModule() {
    module.reset();
    broker->unregisterModule("Periscope");
    robot.takeCalls();
  }

  Messenger messenger;
  std::unique_ptr<CameraThread> thread;
};

}  // namespace

TEST(CameraThread, IsIdleUntilItIsEnabled) {
  Polling viewer;
  viewer.start();
  EXPECT_FALSE(viewer.isPolling());
  EXPECT_TRUE(viewer.thread->isRunning());
  EXPECT_TRUE(viewer.robot.calls().empty());
}

TEST(CameraThread, FetchesOnEveryTick) {
  Polling viewer;
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  EXPECT_TRUE(viewer.waitForFetches(5));
  EXPECT_TRUE(viewer.isPolling());
}

TEST(CameraThread, RestartsItsTimerWhenEnabledTwice) {
  Polling viewer;
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  viewer.thread->setEnableGetImage(true);
  EXPECT_TRUE(viewer.isPolling());
  EXPECT_TRUE(viewer.waitForFetches(3));
  viewer.thread->setEnableGetImage(false);
  EXPECT_FALSE(viewer.isPolling()) << "once off is off";
}

TEST(CameraThread, DoesNotHearWhoEnablesItBeforeItRuns) {
  Polling viewer;
  viewer.thread->setEnableGetImage(true);
  viewer.start();
  EXPECT_FALSE(viewer.isPolling());
  EXPECT_EQ(viewer.gui.fUpdates, 0);
  viewer.thread->setEnableGetImage(true);
  EXPECT_TRUE(viewer.waitForFetches(2));
}

TEST(CameraThread, StopsPollingBeforeTheNextTick) {
  Polling viewer;
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  ASSERT_TRUE(viewer.waitForFetches(2));
  viewer.thread->setEnableGetImage(false);
  EXPECT_FALSE(viewer.isPolling());
  const int fetches = viewer.gui.fUpdates;
  EXPECT_FALSE(viewer.isPolling());
  EXPECT_EQ(viewer.gui.fUpdates, fetches);
}

TEST(CameraThread, FinishesTheTickInWhichItIsStopped) {
  Polling viewer;
  Gate gate;
  viewer.holdImagesAt(gate);
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  ASSERT_TRUE(waitUntil([&] { return gate.isReached(); }));
  viewer.thread->setEnableGetImage(false);
  gate.open();
  EXPECT_FALSE(viewer.isPolling());
  EXPECT_EQ(viewer.gui.fUpdates, 1);
  EXPECT_EQ(viewer.model->fWidth, 4);
}

TEST(CameraThread, TakesItsPeriodFromTheModel) {
  Polling viewer;
  viewer.model->fFps = 5;
  viewer.start();
  EXPECT_EQ(viewer.interval(), 200);
}

TEST(CameraThread, FollowsTheRequestedFrameRateAtTheNextTick) {
  Polling viewer;
  viewer.model->fFps = 5;
  viewer.start();
  EXPECT_EQ(viewer.interval(), 200);
  viewer.model->fFps = 15;
  EXPECT_EQ(viewer.interval(), 200);
  viewer.tick();
  EXPECT_EQ(viewer.interval(), 66);
  viewer.model->fFps = 30;
  viewer.tick();
  EXPECT_EQ(viewer.interval(), 33);
}

TEST(CameraThread, KeepsItsPeriodForAFrameRateOfZero) {
  Polling viewer;
  viewer.model->fFps = 15;
  viewer.start();
  EXPECT_EQ(viewer.interval(), 66);
  viewer.model->fFps = 0;
  viewer.tick();
  EXPECT_EQ(viewer.interval(), 66);
  viewer.model->fFps = 15;
  viewer.tick();
  EXPECT_EQ(viewer.interval(), 66);
}

TEST(CameraThread, FetchesTheImageBeforeTheOverlays) {
  Polling viewer;
  viewer.robot.add("KyMemory")->answer("getListData", Ky::KyValue::array({Ky::KyValue::array()}));
  viewer.model->addObjectWatch("figures");
  viewer.start();
  viewer.tick();
  EXPECT_EQ(viewer.robot.calls(),
            Lines({"KyVideoDevice.getImageRemote(\"\")", "KyMemory.getListData([\"figures\"])"}));
}

TEST(CameraThread, RunsItsTicksInItsOwnThread) {
  Polling viewer;
  struct : CountingGui {
    void updateImage() override {
      fThread = QThread::currentThread();
      CountingGui::updateImage();
    }
    std::atomic<QThread*> fThread{nullptr};
  } gui;
  viewer.module->setGui(&gui);
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  EXPECT_TRUE(waitUntil([&] { return gui.fUpdates > 0; }));
  EXPECT_EQ(gui.fThread, viewer.thread.get());
  viewer.thread->quit();
  viewer.thread.reset();
  viewer.module->setGui(nullptr);
}

TEST(CameraThread, TakesAPictureInTheCallersThread) {
  Polling viewer;
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", Ky::KyValue());
  viewer.thread->takePict();
  EXPECT_EQ(viewer.robot.calls(),
            Lines({"KyPhotoCapture.takePicture(\"/home/tam/recordings/cameras/\", "
                   "\"lookout_photo\")"}));
}

TEST(CameraThread, DoesNotStepThroughStoredImages) {
  Polling viewer;
  viewer.thread->nextImg();
  viewer.thread->previousImg();
  EXPECT_TRUE(viewer.robot.calls().empty());
  EXPECT_EQ(viewer.gui.fUpdates, 0);
}

TEST(CameraThread, DoesNothingWithoutAModuleButRunsOn) {
  Polling viewer;
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", Ky::KyValue());
  viewer.start();
  viewer.destroyModule();
  viewer.thread->setEnableGetImage(true);
  viewer.tick();
  viewer.thread->takePict();
  viewer.thread->nextImg();
  viewer.thread->previousImg();
  EXPECT_TRUE(viewer.robot.calls().empty());
  EXPECT_TRUE(viewer.thread->isRunning());
  EXPECT_TRUE(viewer.isPolling());
}

TEST(CameraThread, DoesNothingWithoutAModel) {
  Polling viewer;
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", Ky::KyValue());
  CameraThread thread(viewer.module, {});
  thread.onTimeOut();
  thread.takePict();
  EXPECT_TRUE(viewer.robot.calls().empty());
}

TEST(CameraThread, EndsAtOnceWithoutAModel) {
  Polling viewer;
  CameraThread thread(viewer.module, {});
  thread.start();
  EXPECT_TRUE(thread.wait());
}

TEST(CameraThread, KeepsNeitherModuleNorModelAlive) {
  Polling viewer;
  viewer.start();
  EXPECT_FALSE(viewer.isPolling());
  const boost::weak_ptr<Module> module = viewer.module;
  const boost::weak_ptr<Model> model = viewer.model;
  viewer.model.reset();
  viewer.destroyModule();
  EXPECT_TRUE(module.expired());
  EXPECT_TRUE(model.expired());
}

TEST(CameraThread, IsDestroyedOnceTheCurrentTickHasFinished) {
  Polling viewer;
  Gate gate;
  viewer.holdImagesAt(gate);
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  ASSERT_TRUE(waitUntil([&] { return gate.isReached(); }));
  viewer.thread->quit();
  gate.open();
  viewer.thread.reset();
  EXPECT_EQ(viewer.gui.fUpdates, 1);
}

TEST(CameraThread, ReleasesTheModuleThatIsDestroyedDuringATick) {
  Polling viewer;
  Gate gate;
  viewer.holdImagesAt(gate);
  viewer.start();
  viewer.thread->setEnableGetImage(true);
  ASSERT_TRUE(waitUntil([&] { return gate.isReached(); }));
  const boost::weak_ptr<Module> module = viewer.module;
  viewer.destroyModule();
  gate.open();
  EXPECT_TRUE(waitUntil([&] { return module.expired(); }));
  EXPECT_TRUE(viewer.thread->isRunning());
}

#include "camera_thread_test.moc"
