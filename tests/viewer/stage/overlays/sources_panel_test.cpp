// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/sources_panel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QJsonArray>
#include <QListView>
#include <QSignalSpy>
#include <QTest>

#include "looks.h"
#include "support/wait.h"

namespace {

class SourcesPanelTest : public testing::Test {
 protected:
  SourcesPanelTest() {
    panel.resize(300, 300);
    panel.show();
    Moment::Source balls = sourceOf({itemOf(0, 0, 0, 5, "ball 1", 0x0003B6)}, "BallDetected");
    balls.isOnFrame = true;
    Moment::Source faces = sourceOf({itemOf(1, 0, 0, 5), itemOf(1, 0, 0, 5)}, "FaceDetected");
    faces.isOld = true;
    faces.age = 2340000;
    shown.sources = {balls, faces, sourceOf({}, "my/figures")};
    shown.behind = 83000;
  }

  QListView& list() { return *panel.findChild<QListView*>(); }
  QAbstractItemModel& rows() { return *list().model(); }
  QString text(int row) { return rows().index(row, 0).data().toString(); }
  bool isTicked(int row) {
    return rows().index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
  }
  // Waits until the list shows it.
  bool showsWithin(const std::function<bool()>& condition) { return waitUntil(condition); }

  SourcesPanel panel;
  Moment::Shown shown;
};

TEST_F(SourcesPanelTest, SaysWhatIsDrawnHowOldAndOnWhichFrame) {
  panel.follow(shown);
  ASSERT_EQ(rows().rowCount(), 3);
  EXPECT_EQ(text(0), "Balls (1)\non its frame, 80 ms behind");
  EXPECT_EQ(text(1), "Faces (2)\n2.3 s ago");
  EXPECT_EQ(text(2), "my/figures (0)\nnothing now");
  EXPECT_EQ(rows().index(0, 0).data(Qt::DecorationRole).value<QColor>(), QColor(0, 3, 0xB6));
  for (int row = 0; row < 3; ++row) EXPECT_TRUE(isTicked(row));
}

TEST_F(SourcesPanelTest, SaysThatThereIsNothing) {
  panel.follow({});
  EXPECT_FALSE(list().isVisible());
  panel.follow(shown);
  EXPECT_TRUE(showsWithin([&] { return list().isVisible(); }));
}

TEST_F(SourcesPanelTest, HidesASourceWithTheKeyboard) {
  panel.follow(shown);
  QSignalSpy spy(&panel, &SourcesPanel::hiddenChanged);
  list().setFocus();
  list().setCurrentIndex(rows().index(0, 0));
  QTest::keyClick(&list(), Qt::Key_Down);
  QTest::keyClick(&list(), Qt::Key_Space);
  EXPECT_EQ(panel.hidden(), std::set<std::string>{"FaceDetected"});
  EXPECT_EQ(spy.count(), 1);
  EXPECT_FALSE(isTicked(1));
  QTest::keyClick(&list(), Qt::Key_Space);
  EXPECT_TRUE(panel.hidden().empty());
}

TEST_F(SourcesPanelTest, FollowsFourTimesASecondAndNoMore) {
  panel.follow(shown);
  QSignalSpy spy(&rows(), &QAbstractItemModel::dataChanged);
  QElapsedTimer time;
  time.start();
  int looks = 0;
  while (time.elapsed() < 900) {
    shown.behind += 10000;
    panel.follow(shown);
    ++looks;
    QTest::qWait(5);
  }
  EXPECT_GT(looks, 20);
  EXPECT_LE(spy.count(), time.elapsed() / 250 + 1);
  EXPECT_GE(spy.count(), 1);
  // And what came last is shown without another look.
  const QString last = QString::number((shown.behind / 1000 + 5) / 10 * 10);
  EXPECT_TRUE(showsWithin([&] { return text(0).contains(last + " ms"); }));
}

TEST_F(SourcesPanelTest, KeepsTheSelectionWhileSourcesComeAndGo) {
  panel.follow(shown);
  list().setCurrentIndex(rows().index(1, 0));
  shown.sources.erase(shown.sources.begin());
  shown.sources.push_back(sourceOf({}, "zebras"));
  panel.follow(shown);
  ASSERT_TRUE(showsWithin([&] { return text(0).startsWith("Faces"); }));
  EXPECT_EQ(rows().rowCount(), 3);
  EXPECT_EQ(list().currentIndex().row(), 0);
  EXPECT_TRUE(list().selectionModel()->isSelected(rows().index(0, 0)));
  shown.sources.insert(shown.sources.begin(), sourceOf({}, "BallDetected"));
  shown.sources.pop_back();
  panel.follow(shown);
  ASSERT_TRUE(showsWithin([&] { return text(0).startsWith("Balls"); }));
  EXPECT_EQ(rows().rowCount(), 3);
  EXPECT_EQ(list().currentIndex().row(), 1);
}

TEST_F(SourcesPanelTest, KeepsTheColourOfASourceThatHasNothingNow) {
  panel.follow(shown);
  shown.sources[0].set = sourceOf({}, "BallDetected").set;
  panel.follow(shown);
  ASSERT_TRUE(showsWithin([&] { return text(0).contains("nothing now"); }));
  EXPECT_EQ(rows().index(0, 0).data(Qt::DecorationRole).value<QColor>(), QColor(0, 3, 0xB6));
}

TEST_F(SourcesPanelTest, SaysThatASourceIsHidden) {
  shown.sources[0].isHidden = true;
  panel.follow(shown);
  EXPECT_EQ(text(0), "Balls (1)\nhidden");
}

TEST_F(SourcesPanelTest, RestoresWhatItSaved) {
  panel.follow(shown);
  rows().setData(rows().index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
  panel.setOnFrame(false);
  SourcesPanel other;
  QSignalSpy hidden(&other, &SourcesPanel::hiddenChanged);
  QSignalSpy onFrame(&other, &SourcesPanel::onFrameChanged);
  EXPECT_TRUE(other.restoreState(panel.saveState()));
  EXPECT_EQ(other.hidden(), std::set<std::string>{"BallDetected"});
  EXPECT_FALSE(other.isOnFrame());
  EXPECT_EQ(hidden.count(), 1);
  EXPECT_EQ(onFrame.count(), 1);
}

TEST_F(SourcesPanelTest, RestoresKeysOfAnyBytes) {
  const std::string key = "k\xC3\xBC\xFF\x01";
  panel.follow({nullptr, {sourceOf({}, key)}, 0});
  rows().setData(rows().index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
  SourcesPanel other;
  EXPECT_TRUE(other.restoreState(panel.saveState()));
  EXPECT_EQ(other.hidden(), std::set<std::string>{key});
}

TEST_F(SourcesPanelTest, RefusesWhatIsNoStateOfIt) {
  rows();
  const QJsonObject wrong[] = {
      {},
      {{"hidden", "BallDetected"}, {"onFrame", true}},
      {{"hidden", QJsonArray{1}}, {"onFrame", false}},
      {{"hidden", QJsonArray{"BallDetected"}}},
      {{"hidden", QJsonArray{"BallDetected"}}, {"onFrame", 1}},
  };
  for (const QJsonObject& state : wrong) {
    EXPECT_FALSE(panel.restoreState(state));
    EXPECT_TRUE(panel.hidden().empty());
    EXPECT_TRUE(panel.isOnFrame());
  }
}

TEST_F(SourcesPanelTest, CanBeReadAloud) {
  panel.follow(shown);
  EXPECT_FALSE(list().accessibleName().isEmpty());
  EXPECT_EQ(rows().index(0, 0).data(Qt::AccessibleTextRole).toString(),
            "Balls (1), on its frame, 80 ms behind");
  const auto* box = panel.findChild<QCheckBox*>();
  EXPECT_EQ(
      QAccessible::queryAccessibleInterface(const_cast<QCheckBox*>(box))->text(QAccessible::Name),
      "Detections on their frame");
}

}  // namespace
