// SPDX-License-Identifier: Apache-2.0
// The viewer's panel on a robot whose generated scene, or other source, stands still, and what is
// drawn over it.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <memory>
#include <string>
#include <vector>

#include "robot/camera/generated_scene.h"
#include "robot/kyrobot_process.h"
#include "support/wait.h"
#include "viewer/core/module.h"
#include "viewer/view/view_image.h"
#include "viewer/view/widget.h"

// A figure as it was painted, without its text, in pixels of the shown picture, 320 x 240.
struct DrawnItem {
  std::string description;
  QPointF centre;
  QRect box;
};

// GUI thread.
class DrawnScene {
 public:
  static inline const std::string kStill = "generated:";
  static constexpr std::int64_t kSecond = 1700000003;

  // What the camera shows; the truth is only that of the default.
  explicit DrawnScene(const std::string& source = kStill + std::to_string(kSecond))
      : fRobot({"--port", "0", "--camera-model", "2", "--camera", "0=" + source}),
        fBroker(fRobot.connect()),
        fModule(Ky::KyModule::createModule<Module>(fBroker)) {
    model().fFps = 30;
    fModule->askForVIM();
    fWidget = std::make_unique<Widget>(fModule, "", "robot", nullptr);
    fModule->setGui(fWidget.get());
    fWidget->show();
    fWidget->setPlaying(true);
  }
  ~DrawnScene() {
    fWidget.reset();
    fModule.reset();
    fBroker->shutdown();
  }
  DrawnScene(const DrawnScene&) = delete;
  DrawnScene& operator=(const DrawnScene&) = delete;

  Model& model() { return *fModule->model(); }

  // By the text of its box, such as "ball detection".
  void tick(const QString& box, bool on = true) {
    for (QCheckBox* one : fWidget->findChildren<QCheckBox*>())
      if (one->text() == box) one->setChecked(on);
  }

  // Waits until the shown picture has the resolution; false when it never has.
  bool chooseResolution(int resolution) {
    for (QComboBox* box : fWidget->findChildren<QComboBox*>())
      if (box->accessibleName() == "resolution") box->setCurrentIndex(resolution);
    const int width = resolution == 0 ? 320 : 160 << resolution;  // the smallest is enlarged
    const quint64 before = fWidget->framesPainted();
    return waitUntil(
        [&] { return model().fWidth == width && fWidget->framesPainted() > before + 3; });
  }

  // The figures of a key of the robot's memory, as soon as there are some.
  std::vector<DrawnItem> drawn(const std::string& key) {
    if (!waitUntil([&] { return !itemsOf(key).empty(); })) return {};
    std::vector<DrawnItem> result;
    for (const auto& [name, item] : itemsOf(key)) result.push_back(measure(key, item));
    return result;
  }

  robot::SceneTruth truth(const std::string& name) const {
    for (const robot::SceneTruth& one : robot::GeneratedScene(0).truthAt(kSecond * 1000000))
      if (one.name == name) return one;
    throw std::runtime_error("there is no \"" + name + "\" in the scene");
  }
  // A part of it, in fractions of its width and height, in pixels of the shown picture.
  QPointF place(const std::string& name, QPointF part) const {
    const robot::SceneTruth thing = truth(name);
    return {(thing.x + (part.x() - 0.5) * thing.width) * 320,
            (thing.y + (part.y() - 0.5) * thing.height) * 240};
  }
  bool waitForFrames(quint64 more) {
    const quint64 before = fWidget->framesPainted();
    return waitUntil([&] { return fWidget->framesPainted() >= before + more; });
  }
  // As far as it is written.
  std::string robotsLog() { return fRobot.process().errors(); }

 private:
  static constexpr int kMostTries = 100;
  using Items = std::map<std::string, displayObject>;
  using Sources = std::map<std::string, displayObjectManager>;

  Items itemsOf(const std::string& key) {
    const Ky::KyCriticalSection lock(model().fObjectsMutex);
    const auto found = model().fObjects.find(key);
    return found == model().fObjects.end() ? Items() : found->second.fObjects;
  }

  // What is painted while there is nothing else to be drawn.
  QImage paintedWith(const std::string& key, const Items& items) {
    const std::string name = "drawn " + key;  // which the robot's memory does not hold
    Sources sources;
    {
      const Ky::KyCriticalSection lock(model().fObjectsMutex);
      sources = model().fObjects;
    }
    QImage painted;
    bool isWhole = false;
    for (int i = 0; i < kMostTries && !isWhole; ++i) {
      putObjects({{name, {boost::make_shared<Ky::KyMutex>(), items}}});
      painted = fWidget->findChild<ViewImage*>()->grab(QRect(160, 120, 320, 240)).toImage();
      // A poll of the camera thread that saw the name has found nothing under it in the memory.
      isWhole = itemsOf(name).size() == items.size();
    }
    putObjects(sources);
    return painted;
  }
  void putObjects(const Sources& sources) {
    const Ky::KyCriticalSection lock(model().fObjectsMutex);
    model().fObjects = sources;
  }

  // Where the picture differs with the figure and without.
  DrawnItem measure(const std::string& key, displayObject item) {
    DrawnItem drawn{item.description, {}, {}};
    item.description.clear();
    const QImage with = paintedWith(key, {{"item", item}});
    const QImage without = paintedWith(key, {});
    int count = 0;
    for (int y = 0; y < with.height(); ++y)
      for (int x = 0; x < with.width(); ++x) {
        if (with.pixel(x, y) == without.pixel(x, y)) continue;
        drawn.centre += QPointF(x + 0.5, y + 0.5);
        drawn.box |= QRect(x, y, 1, 1);
        ++count;
      }
    if (count > 0) drawn.centre /= count;
    return drawn;
  }

  KyrobotProcess fRobot;
  boost::shared_ptr<Ky::KyBroker> fBroker;
  boost::shared_ptr<Module> fModule;
  std::unique_ptr<Widget> fWidget;
};
