// SPDX-License-Identifier: Apache-2.0
// What the user is told after a click on Snapshot.
#include <gtest/gtest.h>

#include <QPushButton>

#include "support/viewer_on_robot.h"
#include "support/wait.h"
#include "viewer/dialogs/notice.h"
#include "viewer/view/view_image.h"
#include "viewer/view/widget.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kCall =
    "KyPhotoCapture.takePicture(\"/home/tam/recordings/cameras/\", \"lookout_photo\")";

ScriptedModule::Answer failing(const std::string& text) {
  return [text](const Ky::KyValue::Array&) -> Ky::KyValue { throw Ky::KyError(text); };
}

// The viewer's panel on a robot whose services for photos are scripted.
class Snapshot : public testing::Test {
 protected:
  Snapshot() : widget(viewer.module, PERISCOPE_ICONS, "robot", nullptr) {
    widget.show();
    viewer.robot.takeCalls();
    viewer.log.clear();
  }

  QPushButton* button(const QString& toolTip) const {
    for (QPushButton* button : widget.findChildren<QPushButton*>())
      if (button->toolTip() == toolTip) return button;
    return nullptr;
  }
  QLabel* notice() const { return widget.findChild<QLabel*>("notice"); }
  QString toldAfterClick() const {
    button("Snapshot")->click();
    return notice()->isVisible() ? notice()->text() : "nothing";
  }

  ViewerOnRobot viewer;
  Widget widget;
};

}  // namespace

TEST_F(Snapshot, TellsWhereThePhotoLiesWithoutAskingAgain) {
  viewer.robot.add("KyPhotoCapture")
      ->answer("takePicture", "/home/tam/recordings/cameras/lookout_photo_2.jpg");
  EXPECT_EQ(notice(), nullptr);
  EXPECT_EQ(toldAfterClick(),
            "Photo on the robot: /home/tam/recordings/cameras/lookout_photo_2.jpg");
  EXPECT_EQ(viewer.robot.calls(), Lines{kCall});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(Snapshot, TellsThatThePhotoIsOnTheRobotWhenItDoesNotSayWhere) {
  const auto service = viewer.robot.add("KyPhotoCapture");
  for (const Ky::KyValue& answer :
       {Ky::KyValue(), Ky::KyValue(7), Ky::KyValue::array({"anything"}), Ky::KyValue("")}) {
    service->answer("takePicture", answer);
    EXPECT_EQ(toldAfterClick(), "The photo is on the robot.") << answer.toString();
  }
  viewer.robot.remove("KyPhotoCapture");
  viewer.robot.add("KyVisionToolbox")->answer("takePicture", Ky::KyValue("/home/tam/photo.jpg"));
  EXPECT_EQ(toldAfterClick(), "The photo is on the robot.");
}

TEST_F(Snapshot, TellsWhyThereIsNoPhoto) {
  const auto service = viewer.robot.add("KyPhotoCapture");
  service->answer("takePicture", failing("the disk is full"));
  EXPECT_EQ(toldAfterClick(), "No photo was taken: the disk is full");
  service->answer("takePicture", "/home/tam/a.jpg");
  EXPECT_EQ(toldAfterClick(), "Photo on the robot: /home/tam/a.jpg") << "the failure is over";

  viewer.robot.remove("KyPhotoCapture");
  EXPECT_TRUE(toldAfterClick().startsWith("No photo was taken: KyVisionToolbox"))
      << notice()->text().toStdString();
  EXPECT_TRUE(notice()->text().endsWith(": the robot has no module of this name"))
      << notice()->text().toStdString();
  viewer.robot.add("KyVisionToolbox")->answer("takePicture", failing("no film"));
  EXPECT_EQ(toldAfterClick(), "No photo was taken: no film");
}

TEST_F(Snapshot, TellsItBelowTheButtonsWhereNothingElseIsAndMovesNothing) {
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", "/home/tam/recordings/cameras/a.jpg");
  std::vector<std::pair<QWidget*, QRect>> before;
  for (QWidget* child : widget.findChildren<QWidget*>())
    before.emplace_back(child, child->geometry());
  toldAfterClick();
  const QRect place = notice()->geometry();
  EXPECT_GT(place.top(), button("Snapshot")->geometry().bottom());
  EXPECT_TRUE(widget.rect().contains(place));
  EXPECT_GE(place.width(), notice()->sizeHint().width()) << "the whole text";
  for (const QWidget* child : widget.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    EXPECT_TRUE(child == notice() || !child->geometry().intersects(place));
  for (const auto& [child, geometry] : before) EXPECT_EQ(child->geometry(), geometry);
  EXPECT_EQ(button("Snapshot")->toolTip(), "Snapshot");
  EXPECT_EQ(widget.size(), QSize(950, 660));
}

TEST_F(Snapshot, TellsALongErrorWithinThePanel) {
  QString text;
  for (int i = 0; i < 100; ++i) text += "many words ";
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", failing(text.toStdString()));
  const QString told = toldAfterClick();
  EXPECT_EQ(told.size(), 200);
  EXPECT_TRUE(told.endsWith(QChar(0x2026)));
  EXPECT_TRUE(widget.rect().contains(notice()->geometry()));
  EXPECT_GT(notice()->y(), button("Snapshot")->geometry().bottom());
  EXPECT_GE(notice()->height(), notice()->heightForWidth(notice()->width()));
}

TEST_F(Snapshot, TellsNothingOnceTheModuleIsGone) {
  viewer.dropModule();
  button("Snapshot")->click();
  EXPECT_EQ(notice(), nullptr);
}

TEST(Notice, GoesByItselfAndComesAgain) {
  QWidget window;
  window.resize(400, 300);
  window.show();
  Notice notice(&window, std::chrono::milliseconds(20));
  EXPECT_FALSE(notice.isVisible());
  for (const char* text : {"one", "<b>two</b>"}) {
    notice.say(Notice::Kind::Done, text, window.rect());
    EXPECT_TRUE(notice.isVisible());
    EXPECT_EQ(notice.text(), text);
    EXPECT_EQ(notice.textFormat(), Qt::PlainText);
    EXPECT_TRUE(waitUntil([&] { return !notice.isVisible(); }));
  }
}

TEST(Notice, LooksOtherwiseWhenSomethingFailed) {
  QWidget window;
  window.resize(400, 300);
  window.show();
  Notice notice(&window);
  const auto cornerOf = [&](Notice::Kind kind) {
    notice.say(kind, "text", window.rect());
    return notice.grab().toImage().pixelColor(1, 1);
  };
  EXPECT_EQ(cornerOf(Notice::Kind::Done), QColor("#323232"));
  EXPECT_EQ(cornerOf(Notice::Kind::Failed), QColor("#b00020"));
}
