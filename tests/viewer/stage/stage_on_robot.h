// SPDX-License-Identifier: Apache-2.0
// A stage of a viewer that plays when it is told to.
#pragma once

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <atomic>
#include <memory>

#include "support/viewer_on_robot.h"
#include "support/wait.h"
#include "viewer/stage/stage.h"
#include "viewer/stage/stage_canvas.h"
#include "viewer/stage/stage_line.h"

// Plays when it is told to.
class Player : public LookoutWidget {
 public:
  void setPlaying(bool playing) override { fPlaying = playing; }
  bool isPlaying() const override { return fPlaying; }
  double frameRateWanted() const override { return 30; }

 private:
  bool fPlaying = false;
};

struct StageOnRobot {
  StageOnRobot() {
    stage = std::make_unique<Stage>(player, viewer.module, "tam", nullptr);
    stage->resize(800, 600);
    stage->show();
    // Or else no key is a shortcut.
    EXPECT_TRUE(QTest::qWaitForWindowActive(stage.get()));
  }
  // As if it had been captured after the one before.
  void publish(Frame frame) {
    frame.timestamp += ++published;
    viewer.model().fFrames.publish(std::move(frame));
  }
  bool waitForFrames(quint64 count) {
    return waitUntil([this, count] { return stage->framesPainted() >= count; });
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(stage.get(), key, modifiers);
  }
  Viewport& viewport() { return stage->canvas().scene().viewport(); }
  QString line() const { return stage->findChild<StageLine*>()->text(); }
  QPushButton* invitation() const { return stage->findChild<QPushButton*>(); }

  std::atomic<int> published = 0;
  ViewerOnRobot viewer;
  Player player;
  std::unique_ptr<Stage> stage;
};
