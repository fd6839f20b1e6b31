// SPDX-License-Identifier: Apache-2.0
#include "viewer/recording/videorecordersettings_widget.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "support/viewer_on_robot.h"
#include "viewer/core/videorecordermodel.h"

namespace {

class RecorderPanel : public testing::Test {
 protected:
  QLineEdit* name() { return panel.findChild<QLineEdit*>(); }
  QLabel* label(int row) { return qobject_cast<QLabel*>(panel.layout()->itemAt(row)->widget()); }
  QString status() { return label(2)->text(); }
  VideoRecorderModel& recorder() { return *viewer.model().fVideoRecorder; }

  ViewerOnRobot viewer;
  VideoRecorderSettingsWidget panel{viewer.module, nullptr};
};

}  // namespace

TEST_F(RecorderPanel, StartsWithANameAndAnInvitation) {
  auto* layout = qobject_cast<QVBoxLayout*>(panel.layout());
  ASSERT_NE(layout, nullptr);
  ASSERT_EQ(layout->count(), 4);
  EXPECT_EQ(label(0)->text(), "Video name - saved on the robot.");
  EXPECT_EQ(layout->itemAt(1)->widget(), name());
  EXPECT_EQ(name()->text(), "new");
  EXPECT_EQ(status(), "Press record!");
  EXPECT_NE(layout->itemAt(3)->spacerItem(), nullptr);
  EXPECT_EQ(layout->stretch(3), 1);
  EXPECT_EQ(panel.size(), QSize(400, 600));
  EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
  EXPECT_TRUE(name()->isEnabled());
  EXPECT_EQ(name()->validator(), nullptr);
}

TEST_F(RecorderPanel, ReadsTheNameAsTyped) {
  panel.show();
  name()->clear();
  QTest::keyClicks(name(), "my_clip 2");
  EXPECT_EQ(panel.getRecordName(), "my_clip 2");
  EXPECT_EQ(panel.getFramerate(), 0.0f);
}

TEST_F(RecorderPanel, ReadsANameBeyondAsciiAsOneThatTheRecorderRefuses) {
  for (const char* typed : {"vid\xC3\xA9o", "\xD0\xB2\xD0\xB8\xD0\xB4", "\xE2\x82\xAC"}) {
    name()->setText(QString::fromUtf8(typed));
    EXPECT_FALSE(recorder().setRecordName(panel.getRecordName())) << typed;
  }
}

TEST_F(RecorderPanel, ShowsThatItRecordsAndLocksTheName) {
  recorder().fRecordName = "clip";
  recorder().fIsRecording = true;
  panel.updateFields();
  EXPECT_EQ(status(), "Recording clip ... ");
  EXPECT_FALSE(name()->isEnabled());
}

TEST_F(RecorderPanel, ReportsTheFilmAndUnlocksTheName) {
  panel.xWidgetsSetEnabled(false);
  recorder().fRecordName = "new";
  recorder().fFilePath = "/home/tam/recordings/cameras/new.avi";
  recorder().fFrameCount = 150;
  panel.updateFields();
  EXPECT_EQ(status(),
            "'new' (150 frames) was recorded on the robot.\n"
            "File path: /home/tam/recordings/cameras/new.avi");
  EXPECT_TRUE(name()->isEnabled());
}

TEST_F(RecorderPanel, CountsFrames) {
  recorder().fRecordName = "a";
  const std::pair<int, const char*> kCounts[] = {
      {0, "(0 frame)"}, {1, "(1 frame)"}, {2, "(2 frames)"}, {1000000, "(1000000 frames)"}};
  for (const auto& [count, text] : kCounts) {
    recorder().fFrameCount = count;
    panel.updateFields();
    EXPECT_TRUE(status().contains(text)) << text;
  }
}

TEST_F(RecorderPanel, SaysNothingOfANegativeCount) {
  recorder().fFrameCount = -1;
  panel.updateFields();
  EXPECT_EQ(status(), "");
  EXPECT_TRUE(name()->isEnabled());
}

TEST_F(RecorderPanel, ShowsAPathAsTextWhateverItLooksLike) {
  recorder().fRecordName = "a";
  recorder().fFilePath = "<b>bold</b>\xFF" + std::string(3000, ' ') + "end";
  recorder().fFrameCount = 2;
  panel.show();
  panel.updateFields();
  QCoreApplication::processEvents();
  EXPECT_EQ(label(2)->textFormat(), Qt::PlainText);
  EXPECT_EQ(panel.size(), QSize(400, 600));
  EXPECT_LE(label(2)->geometry().right(), panel.width());
}

TEST_F(RecorderPanel, HasRoomForTheWholeReport) {
  recorder().fRecordName = "new";
  recorder().fFilePath = "/home/tam/recordings/cameras/new.avi";
  panel.show();
  panel.updateFields();
  QCoreApplication::processEvents();
  EXPECT_GE(label(2)->height(), 2 * label(2)->fontMetrics().height());
}

TEST_F(RecorderPanel, DoesNothingWithoutRecorderOrModule) {
  const auto kept = viewer.model().fVideoRecorder;
  viewer.model().fVideoRecorder.reset();
  panel.updateFields();
  EXPECT_EQ(status(), "Press record!");
  viewer.model().fVideoRecorder = kept;
  viewer.dropModule();
  panel.updateFields();
  EXPECT_EQ(status(), "Press record!");
}
