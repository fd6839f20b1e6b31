// SPDX-License-Identifier: Apache-2.0
// The further views that the viewer's widget offers.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <memory>

#include "support/viewer_on_robot.h"
#include "viewer/view/view_image.h"
#include "viewer/view/widget.h"

namespace {

class WidgetViews : public testing::Test {
 protected:
  WidgetViews() {
    viewer.robot.takeCalls();
    widget.show();
    QObject::connect(&widget, &LookoutWidget::viewWanted, &widget,
                     [this](const QString& kind, bool another) {
                       EXPECT_FALSE(another);
                       wanted << kind;
                     });
  }

  static void doubleClick(QWidget& target) {
    const QPointF place(5, 5);
    QMouseEvent event(QEvent::MouseButtonDblClick, place, target.mapToGlobal(place), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
  }

  ViewerOnRobot viewer;
  Widget widget{viewer.module, PERISCOPE_ICONS, "robot", nullptr};
  QStringList wanted;
};

TEST_F(WidgetViews, AreAStageAndTheRobotsFiles) {
  EXPECT_EQ(widget.viewKinds(), QStringList({"stage", "files"}));
  for (const QString& kind : widget.viewKinds()) {
    const std::unique_ptr<LookoutWidget> view(widget.makeView(kind, nullptr));
    ASSERT_NE(view, nullptr) << kind.toStdString();
    EXPECT_FALSE(view->windowTitle().isEmpty()) << kind.toStdString();
  }
  EXPECT_EQ(widget.makeView("nothing", nullptr), nullptr);
  EXPECT_TRUE(viewer.robot.takeCalls().empty()) << "the robot is asked for nothing";
}

TEST_F(WidgetViews, AreWantedAtADoubleClickOnThePicture) {
  doubleClick(*widget.findChild<ViewImage*>());
  EXPECT_EQ(wanted, QStringList("stage"));
  doubleClick(widget);
  EXPECT_EQ(wanted.size(), 1) << "not on the picture";
}

TEST_F(WidgetViews, AreWantedAtTheKeyS) {
  QKeyEvent key(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier, "s");
  QCoreApplication::sendEvent(&widget, &key);
  EXPECT_EQ(wanted, QStringList("stage"));
}

}  // namespace
