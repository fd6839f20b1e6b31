// SPDX-License-Identifier: Apache-2.0
#include "robots/connect_dialog.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>

#include "robots/remembered_robots.h"
#include "robots/robot_address.h"
#include "settings_of_test.h"

using Lookout::ConnectDialog;
using Lookout::RememberedRobots;

namespace {

struct Dialog : ConnectDialog {
  QLineEdit* address = findChild<QLineEdit*>("address");
  QSpinBox* port = findChild<QSpinBox*>("port");
  QCheckBox* unencrypted = findChild<QCheckBox*>("unencrypted");
  QListWidget* remembered = findChild<QListWidget*>("remembered");
  QPushButton* forget = findChild<QPushButton*>("forget");
  QLabel* error = findChild<QLabel*>("error");
};

}  // namespace

TEST(RememberedRobots, PutsTheMostRecentFirst) {
  const SettingsOfTest settings;
  EXPECT_TRUE(RememberedRobots::all().isEmpty());
  RememberedRobots::remember("a:1");
  RememberedRobots::remember("b:2");
  RememberedRobots::remember("a:1");
  EXPECT_EQ(RememberedRobots::all(), (QStringList{"a:1", "b:2"}));
  RememberedRobots::forget("a:1");
  EXPECT_EQ(RememberedRobots::all(), QStringList{"b:2"});
}

TEST(RememberedRobots, DropsTheOldestOfTooMany) {
  const SettingsOfTest settings;
  for (int i = 0; i < RememberedRobots::kMost + 5; ++i)
    RememberedRobots::remember(QString("robot:%1").arg(i));
  EXPECT_EQ(RememberedRobots::all().size(), RememberedRobots::kMost);
  EXPECT_EQ(RememberedRobots::all().first(), "robot:24");
  EXPECT_EQ(RememberedRobots::all().last(), "robot:5");
}

TEST(RememberedRobots, RemembersWhichAreReachedWithoutEncryption) {
  const SettingsOfTest settings;
  QSettings().setValue("Robots/remembered", QStringList{"a:1"});  // as it was written before
  EXPECT_FALSE(RememberedRobots::isUnencrypted("a:1"));
  RememberedRobots::remember("a:1", true);
  RememberedRobots::remember("b:2");
  EXPECT_EQ(RememberedRobots::all(), (QStringList{"b:2", "a:1"}));
  EXPECT_TRUE(RememberedRobots::isUnencrypted("a:1"));
  EXPECT_FALSE(RememberedRobots::isUnencrypted("b:2"));
  RememberedRobots::remember("a:1", false);
  EXPECT_FALSE(RememberedRobots::isUnencrypted("a:1"));
  RememberedRobots::remember("a:1", true);
  RememberedRobots::forget("a:1");
  EXPECT_FALSE(RememberedRobots::isUnencrypted("a:1"));
}

TEST(ConnectDialog, StartsWithThisComputerWhenNoRobotWasUsedYet) {
  const SettingsOfTest settings;
  const Dialog dialog;
  EXPECT_EQ(dialog.address->text(), "127.0.0.1");
  EXPECT_EQ(dialog.port->value(), 9559);
  EXPECT_FALSE(dialog.forget->isEnabled());
}

TEST(ConnectDialog, OffersTheRobotsUsedBeforeTheLastOneFirst) {
  const SettingsOfTest settings;
  RememberedRobots::remember("tam.local:9559");
  RememberedRobots::remember("[::1]:9560");
  Dialog dialog;
  EXPECT_EQ(dialog.address->text(), "::1");
  EXPECT_EQ(dialog.port->value(), 9560);
  dialog.remembered->setCurrentRow(1);
  EXPECT_EQ(dialog.address->text(), "tam.local");
  EXPECT_EQ(dialog.port->value(), 9559);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.robot(), (Ky::KyAddress{"tam.local", 9559}));
}

TEST(ConnectDialog, KeepsTheEncryptionWithTheRobotForWhichItWasChosen) {
  const SettingsOfTest settings;
  RememberedRobots::remember("plain:9559", true);
  RememberedRobots::remember("other:9559");
  Dialog dialog;
  EXPECT_FALSE(dialog.unencrypted->isChecked());
  dialog.remembered->setCurrentRow(1);
  EXPECT_TRUE(dialog.unencrypted->isChecked());
  EXPECT_TRUE(dialog.isUnencrypted());
  dialog.port->setValue(9560);
  EXPECT_FALSE(dialog.unencrypted->isChecked());
  dialog.address->setText("plain:9559");
  EXPECT_TRUE(dialog.unencrypted->isChecked());
  dialog.address->setText("new");
  EXPECT_FALSE(dialog.unencrypted->isChecked());
  dialog.unencrypted->click();
  dialog.accept();
  EXPECT_TRUE(dialog.isUnencrypted());
}

TEST(ConnectDialog, ForgetsTheSelectedRobot) {
  const SettingsOfTest settings;
  RememberedRobots::remember("a:1");
  RememberedRobots::remember("b:2");
  Dialog dialog;
  dialog.remembered->setCurrentRow(0);
  ASSERT_TRUE(dialog.forget->isEnabled());
  dialog.forget->click();
  EXPECT_EQ(RememberedRobots::all(), QStringList{"a:1"});
  EXPECT_EQ(dialog.remembered->count(), 1);
}

TEST(ConnectDialog, TakesAnAddressThatNamesItsPort) {
  const SettingsOfTest settings;
  Dialog dialog;
  dialog.address->setText(" 10.0.0.5:1234 ");
  dialog.accept();
  EXPECT_EQ(dialog.robot(), (Ky::KyAddress{"10.0.0.5", 1234}));
}

TEST(ConnectDialog, SaysWhatIsWrongInsteadOfClosing) {
  const SettingsOfTest settings;
  Dialog dialog;
  const auto answerTo = [&](const char* text) {
    dialog.address->setText(text);
    dialog.accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted) << text;
    EXPECT_TRUE(dialog.error->isVisibleTo(&dialog)) << text;
    return dialog.error->text();
  };
  EXPECT_EQ(answerTo(""), "Type the robot's name or IP address.");
  EXPECT_TRUE(answerTo("robot:abc").contains("'abc' is no port"));
  EXPECT_TRUE(answerTo("robot:0").contains("ports 1 to 65535"));
  EXPECT_TRUE(answerTo("a robot").contains("is no address"));
  EXPECT_TRUE(answerTo("<b>bold</b>").contains("<b>"));  // shown as it was typed
}

TEST(ConnectDialog, ShowsSettingsThatWereDamagedAsTheyAre) {
  const SettingsOfTest settings;
  QSettings().setValue("Robots/remembered", QStringList{"robot:port"});
  const Dialog dialog;
  EXPECT_EQ(dialog.address->text(), "robot:port");
}

TEST(RobotAddress, UsesTheGivenPortWhereTheTextNamesNone) {
  EXPECT_EQ(Lookout::robotAddress("tam", 77), (Ky::KyAddress{"tam", 77}));
  EXPECT_EQ(Lookout::robotAddress("tam:78", 77), (Ky::KyAddress{"tam", 78}));
  EXPECT_EQ(Lookout::robotAddress("[::1]", 77), (Ky::KyAddress{"::1", 77}));
  EXPECT_EQ(Lookout::robotAddress("::1", 77), (Ky::KyAddress{"::1", 77}));
  EXPECT_EQ(Lookout::robotAddress("[::1]:78", 77), (Ky::KyAddress{"::1", 78}));
}
