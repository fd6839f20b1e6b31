// SPDX-License-Identifier: Apache-2.0
// The viewer with the German texts that the host installs for it.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTranslator>

#include "support/viewer_on_robot.h"
#include "viewer/dialogs/get_loginpassword_dialog.h"
#include "viewer/stage/stage.h"
#include "viewer/stage/stage_actions.h"
#include "viewer/stage/stage_line.h"
#include "viewer/view/widget.h"

namespace {

struct German {
  German() {
    EXPECT_TRUE(texts.load(PERISCOPE_GERMAN));
    EXPECT_TRUE(QCoreApplication::installTranslator(&texts));
  }

  QTranslator texts;
};

struct GermanViewer {
  German german;  // before the widget, whose texts are made with it
  ViewerOnRobot viewer;
  Widget widget{viewer.module, "/icons/", "127.0.0.1", nullptr};
};

template <typename Labelled>
QStringList textsIn(const QWidget& widget) {
  QStringList texts;
  for (const Labelled* each : widget.findChildren<Labelled*>()) texts << each->text();
  return texts;
}

}  // namespace

TEST(GermanTexts, AreOnTheStage) {
  GermanViewer on;
  const Stage stage(on.widget, on.viewer.module, "tam", nullptr);
  EXPECT_EQ(stage.windowTitle(), "Bühne");
  EXPECT_TRUE(stage.findChild<StageLine*>()->text().contains("Keine Wiedergabe"));
  const QStringList buttons = textsIn<QToolButton>(stage);
  for (const char* text : {"Abspielen", "Einfrieren", "Einpassen", "Vollbild", "Raster"})
    EXPECT_TRUE(buttons.contains(text)) << text;
}

TEST(GermanTexts, AreInTheStagesMenuWithoutAKeyTwice) {
  const GermanViewer on;
  QWidget widget;
  const StageActions actions(widget);
  QMenu menu;
  actions.fill(menu);
  QStringList keys;
  for (const QAction* action : menu.actions())
    keys << QKeySequence::mnemonic(action->text()).toString();
  keys.removeAll(QString());
  EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
  EXPECT_EQ(actions.fit->text(), "Einpassen");
}

TEST(GermanTexts, AreInTheLoginDialog) {
  const GermanViewer on;
  const Dk::GetLoginPasswordDialog dialog(nullptr);
  EXPECT_EQ(dialog.windowTitle(), "Anmeldung erforderlich");
}

// They are what programs, tests and manuals know the panels' parts by.
TEST(GermanTexts, LeaveTheFixedTextsOfThePanelsAlone) {
  const GermanViewer on;
  EXPECT_EQ(on.widget.findChild<QTabWidget*>()->tabText(0), "Video Settings");
  EXPECT_TRUE(textsIn<QPushButton>(on.widget).contains("Switch camera"));
  EXPECT_TRUE(textsIn<QLabel>(on.widget).contains("Framerate up to"));
  EXPECT_TRUE(textsIn<QLabel>(on.widget).contains("Press record!"));
  EXPECT_TRUE(textsIn<QCheckBox>(on.widget).contains("Auto white balance"));
}
