// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage.h"

#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>
#include <QToolBar>
#include <thread>

#include "frames.h"
#include "stage_on_robot.h"
#include "support/wait.h"
#include "viewer/stage/pixel_label.h"
#include "viewer/stage/shortcut_sheet.h"
#include "viewer/stage/stage_canvas.h"
#include "viewer/stage/stage_line.h"

namespace {

TEST(Stage, ShowsEachPictureThatComes) {
  StageOnRobot robot;
  robot.publish(plainFrame({320, 240}, 235));
  ASSERT_TRUE(robot.waitForFrames(1));
  const QImage image = robot.stage->canvas().grab().toImage();
  EXPECT_EQ(image.pixel(image.width() / 2, image.height() / 2), 0xfffefefe);
  robot.publish(plainFrame({320, 240}, 16));
  ASSERT_TRUE(robot.waitForFrames(2));
  EXPECT_EQ(robot.stage->canvas().grab().toImage().pixel(image.width() / 2, image.height() / 2),
            0xff000000);
}

TEST(Stage, ShowsThePictureThatWasThereBefore) {
  ViewerOnRobot viewer;
  viewer.model().fFrames.publish(plainFrame({320, 240}, 100));
  Player player;
  Stage stage(player, viewer.module, "tam", nullptr);
  stage.show();
  EXPECT_TRUE(waitUntil([&] { return stage.framesPainted() == 1; }));
}

TEST(Stage, InvitesToPressPlayBeforeTheFirstPicture) {
  StageOnRobot robot;
  ASSERT_TRUE(robot.invitation()->isVisible());
  QTest::mouseClick(robot.invitation(), Qt::LeftButton);
  EXPECT_TRUE(robot.player.isPlaying());
  EXPECT_FALSE(robot.invitation()->isVisible());
}

TEST(Stage, PlaysAndPausesWithSpace) {
  StageOnRobot robot;
  robot.press(Qt::Key_Space);
  EXPECT_TRUE(robot.player.isPlaying());
  EXPECT_EQ(robot.stage->actions().play->text(), "Pause");
  robot.press(Qt::Key_Space);
  EXPECT_FALSE(robot.player.isPlaying());
  EXPECT_EQ(robot.stage->actions().play->text(), "Play");
}

TEST(Stage, FreezesThisViewWhileTheRestGoesOn) {
  StageOnRobot robot;
  robot.player.setPlaying(true);
  robot.publish(plainFrame({320, 240}, 100));
  ASSERT_TRUE(robot.waitForFrames(1));
  EXPECT_TRUE(robot.stage->isPlaying());
  robot.press(Qt::Key_Z);
  robot.publish(plainFrame({320, 240}, 200));
  QCoreApplication::processEvents();
  EXPECT_EQ(robot.stage->canvas().scene().frame()->number, 1U);
  EXPECT_TRUE(robot.line().contains("Frozen"));
  EXPECT_FALSE(robot.stage->isPlaying());
  robot.press(Qt::Key_Z);
  EXPECT_EQ(robot.stage->canvas().scene().frame()->number, 2U);
  EXPECT_FALSE(robot.line().contains("Frozen"));
}

TEST(Stage, IsZoomedByKeys) {
  StageOnRobot robot;
  robot.publish(plainFrame({320, 240}, 100));
  ASSERT_TRUE(robot.waitForFrames(1));
  const double fitting = robot.viewport().scale();
  robot.press(Qt::Key_1);
  EXPECT_DOUBLE_EQ(robot.viewport().scale(), 1);
  robot.press(Qt::Key_Plus);
  EXPECT_DOUBLE_EQ(robot.viewport().scale(), 1.25);
  robot.press(Qt::Key_Minus);
  robot.press(Qt::Key_Minus);
  EXPECT_DOUBLE_EQ(robot.viewport().scale(), 0.8);
  robot.press(Qt::Key_F);
  EXPECT_DOUBLE_EQ(robot.viewport().scale(), fitting);
}

TEST(Stage, IsTurnedMirroredAndMovedByKeys) {
  StageOnRobot robot;
  robot.publish(plainFrame({320, 240}, 100));
  ASSERT_TRUE(robot.waitForFrames(1));
  robot.press(Qt::Key_R);
  EXPECT_EQ(robot.viewport().quarters(), 1);
  robot.press(Qt::Key_R, Qt::ShiftModifier);
  robot.press(Qt::Key_R, Qt::ShiftModifier);
  EXPECT_EQ(robot.viewport().quarters(), 3);
  robot.press(Qt::Key_M);
  EXPECT_TRUE(robot.viewport().isMirrored());
  for (int i = 0; i < 12; ++i) robot.press(Qt::Key_Plus);
  const QRectF before = robot.viewport().pictureRect();
  robot.press(Qt::Key_Right);
  EXPECT_LT(robot.viewport().pictureRect().left(), before.left());
  robot.press(Qt::Key_Down);
  EXPECT_LT(robot.viewport().pictureRect().top(), before.top());
}

TEST(Stage, SaysWhatThePixelIsThatIsPointedAt) {
  StageOnRobot robot;
  robot.publish(plainFrame({320, 240}, 120, 140, 90));
  ASSERT_TRUE(robot.waitForFrames(1));
  robot.press(Qt::Key_I);
  auto* label = robot.stage->findChild<PixelLabel*>();
  ASSERT_TRUE(label->isVisible());
  EXPECT_TRUE(label->text().contains("Point at a pixel"));
  robot.press(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_TRUE(label->text().contains("161, 120 &nbsp; YUV 120 140 90 &nbsp; RGB "))
      << label->text().toStdString();
  robot.press(Qt::Key_I);
  EXPECT_FALSE(label->isVisible());
}

TEST(Stage, CountsPicturesThatCameAndWereNotPainted) {
  StageOnRobot robot;
  robot.publish(plainFrame({32, 24}, 100));
  ASSERT_TRUE(robot.waitForFrames(1));
  for (int i = 0; i < 4; ++i) robot.publish(plainFrame({32, 24}, 100));
  ASSERT_TRUE(robot.waitForFrames(2));
  EXPECT_TRUE(waitUntil([&] { return robot.line().contains("3 dropped"); }));
}

TEST(Stage, SaysThatItIsPausedOverThePictureAndInItsLine) {
  StageOnRobot robot;
  robot.press(Qt::Key_Space);
  robot.publish(plainFrame({32, 24}, 100));
  ASSERT_TRUE(waitUntil([&] { return robot.line().contains("Live"); }));
  robot.press(Qt::Key_Space);
  ASSERT_TRUE(waitUntil([&] { return robot.line().contains("Paused"); }));
  const auto labels = robot.stage->canvas().findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->isVisible() && label->text() == "Paused";
  }));
}

TEST(Stage, AsksItsHostForTheFullScreenAndBack) {
  StageOnRobot robot;
  QSignalSpy wanted(robot.stage.get(), &LookoutWidget::fullScreenWanted);
  robot.press(Qt::Key_F11);
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_TRUE(wanted[0][0].toBool());
  robot.press(Qt::Key_Escape);
  EXPECT_EQ(wanted.size(), 1) << "it does not fill the screen";
  robot.stage->showFullScreen();
  robot.press(Qt::Key_Escape);
  ASSERT_EQ(wanted.size(), 2);
  EXPECT_FALSE(wanted[1][0].toBool());
}

TEST(Stage, AsksItsViewerForAnotherStage) {
  StageOnRobot robot;
  QSignalSpy wanted(&robot.player, &LookoutWidget::viewWanted);
  robot.press(Qt::Key_S, Qt::ShiftModifier);
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_EQ(wanted[0][0].toString(), "stage");
  EXPECT_TRUE(wanted[0][1].toBool());
}

TEST(Stage, HidesItsLineAndItsToolBarByKeys) {
  StageOnRobot robot;
  robot.press(Qt::Key_B);
  EXPECT_FALSE(robot.stage->findChild<StageLine*>()->isVisible());
  robot.press(Qt::Key_T);
  EXPECT_FALSE(robot.stage->findChild<QToolBar*>()->isVisible());
}

TEST(Stage, GivesWhatIsSetToTheOneAfterIt) {
  StageOnRobot before;
  before.publish(plainFrame({320, 240}, 100));
  ASSERT_TRUE(before.waitForFrames(1));
  before.press(Qt::Key_R);
  before.press(Qt::Key_M);
  before.press(Qt::Key_G);
  before.press(Qt::Key_1);
  before.press(Qt::Key_B);
  StageOnRobot after;
  EXPECT_TRUE(after.stage->restoreState(before.stage->saveState()));
  EXPECT_EQ(after.viewport().quarters(), 1);
  EXPECT_TRUE(after.viewport().isMirrored());
  EXPECT_TRUE(after.stage->actions().mirror->isChecked());
  EXPECT_TRUE(after.stage->canvas().scene().look().grid);
  EXPECT_FALSE(after.stage->findChild<StageLine*>()->isVisible());
  EXPECT_DOUBLE_EQ(after.viewport().state().scale, 1);
}

TEST(Stage, RefusesAStateThatIsNone) {
  StageOnRobot robot;
  for (const char* state : {"", "{}", "[]", "nonsense", "{\"version\": 2}"})
    EXPECT_FALSE(robot.stage->restoreState(state)) << state;
  EXPECT_TRUE(robot.stage->restoreState("{\"version\": 1, \"view\": 7, \"grid\": \"x\"}"));
}

TEST(Stage, ConvertsNothingWhileNobodySeesIt) {
  StageOnRobot robot;
  robot.stage->hide();
  robot.publish(plainFrame({320, 240}, 100));
  QCoreApplication::processEvents();
  EXPECT_EQ(robot.stage->canvas().scene().frame(), nullptr);
  robot.stage->show();
  EXPECT_TRUE(robot.waitForFrames(1));
}

TEST(Stage, MayGoWhilePicturesCome) {
  StageOnRobot robot;
  std::atomic<bool> goesOn = true;
  std::thread camera([&] {
    while (goesOn) robot.publish(plainFrame({32, 24}, 100));
  });
  ASSERT_TRUE(robot.waitForFrames(3));
  robot.stage.reset();
  goesOn = false;
  camera.join();
}

TEST(Stage, StandsStillOnceItsModuleIsGone) {
  StageOnRobot robot;
  robot.publish(plainFrame({32, 24}, 100));
  ASSERT_TRUE(robot.waitForFrames(1));
  robot.viewer.dropModule();
  robot.stage->canvas().grab();
  EXPECT_EQ(robot.stage->framesPainted(), 1U);
}

TEST(Stage, LeavesSpaceToTheListOfSources) {
  StageOnRobot robot;
  robot.viewer.model().addObjectWatch("figures");
  robot.publish(plainFrame({320, 240}, 100));
  robot.press(Qt::Key_L);
  auto* list = robot.stage->findChild<QListView*>();
  ASSERT_TRUE(waitUntil([&] { return list->model()->rowCount() == 1; }));
  const QModelIndex row = list->model()->index(0, 0);
  list->setFocus();
  list->setCurrentIndex(row);
  QTest::keyClick(list, Qt::Key_Space);
  EXPECT_EQ(row.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_FALSE(robot.player.isPlaying());
}

TEST(Stage, NamesEverythingForThoseWhoHear) {
  StageOnRobot robot;
  EXPECT_FALSE(robot.stage->accessibleName().isEmpty());
  EXPECT_FALSE(robot.stage->canvas().accessibleName().isEmpty());
  for (const StageActions::Group& group : robot.stage->actions().groups())
    for (const QAction* action : group.actions) {
      EXPECT_FALSE(action->text().isEmpty());
      EXPECT_FALSE(action->statusTip().isEmpty()) << action->text().toStdString();
      EXPECT_FALSE(action->shortcut().isEmpty()) << action->text().toStdString();
    }
}

TEST(Stage, ListsAllItsKeysOnASheet) {
  StageOnRobot robot;
  robot.press(Qt::Key_Question);
  auto* sheet = robot.stage->findChild<ShortcutSheet*>();
  ASSERT_NE(sheet, nullptr);
  const QString text = sheet->findChild<QTextBrowser*>()->toPlainText();
  for (const StageActions::Group& group : robot.stage->actions().groups())
    for (const QAction* action : group.actions)
      EXPECT_TRUE(text.contains(action->shortcut().toString())) << action->text().toStdString();
  QTest::keyClick(sheet, Qt::Key_Question);
  EXPECT_FALSE(sheet->isVisible());
}

TEST(Stage, MayGoWithItsMenuAndItsSheetOpen) {
  StageOnRobot robot;
  robot.press(Qt::Key_Question);
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10}, {10, 10});
  QCoreApplication::sendEvent(robot.stage.get(), &event);
  ASSERT_NE(robot.stage->findChild<QMenu*>(), nullptr);
  robot.stage.reset();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(Stage, HasNoKeyTwice) {
  StageOnRobot robot;
  QSet<QKeySequence> seen;
  for (const StageActions::Group& group : robot.stage->actions().groups())
    for (const QAction* action : group.actions)
      for (const QKeySequence& keys : action->shortcuts()) {
        EXPECT_FALSE(seen.contains(keys)) << keys.toString().toStdString();
        seen.insert(keys);
      }
}

}  // namespace
