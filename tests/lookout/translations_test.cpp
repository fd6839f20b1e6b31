// SPDX-License-Identifier: Apache-2.0
#include "language/translations.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLibraryInfo>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>

#include "plugins/plugin_catalog.h"
#include "robots/connect_dialog.h"
#include "robots/robot_dock.h"
#include "robots/status_line.h"
#include "settings_of_test.h"
#include "several_plugins.h"
#include "support/wait.h"
#include "tcp_robot.h"
#include "window/main_window.h"
#include "window/preferences_dialog.h"

using namespace Lookout;

namespace {

using Environment = std::vector<std::pair<const char*, const char*>>;

void setEnvironment(const Environment& environment) {
  for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) qunsetenv(variable);
  for (const auto& [variable, value] : environment) qputenv(variable, value);
}

QStringList wantedIn(const Environment& environment) {
  setEnvironment(environment);
  return wantedLanguages();
}

void speakGerman() {
  setEnvironment({{"LANG", "de_DE.UTF-8"}});
  installTranslations();
}

QString ownTexts() {
  return translationsFolder(QCoreApplication::applicationDirPath());
}

// The keys of a menu that two of its entries have.
QStringList keysTwiceIn(QMenu& menu) {
  emit menu.aboutToShow();
  QSet<QString> keys;
  QStringList twice;
  for (const QAction* action : menu.actions()) {
    const QString key = QKeySequence::mnemonic(action->text()).toString();
    if (key.isEmpty()) continue;
    if (keys.contains(key)) twice << menu.title() + ": " + action->text();
    keys << key;
  }
  return twice;
}

// Of the window's menu bar and all of its menus.
QStringList keysTwiceIn(const MainWindow& window) {
  QMenu bar("menu bar");
  bar.addActions(window.menuBar()->actions());
  QStringList twice = keysTwiceIn(bar);
  for (QMenu* menu : window.findChildren<QMenu*>()) twice << keysTwiceIn(*menu);
  return twice;
}

QStringList textsOf(const MainWindow& window) {
  QStringList texts;
  for (const QAction* action : window.findChildren<QAction*>()) texts << action->text();
  for (const QLabel* label : window.findChildren<QLabel*>()) texts << label->text();
  for (const QPushButton* button : window.findChildren<QPushButton*>()) texts << button->text();
  return texts;
}

}  // namespace

TEST(Translations, AreWantedInTheLanguageOfTheLocale) {
  const QStringList german = {"de_DE", "de"};
  EXPECT_EQ(wantedIn({{"LANG", "de_DE.UTF-8"}}), german);
  EXPECT_EQ(wantedIn({{"LANG", "de_DE@euro"}}), german);
  EXPECT_EQ(wantedIn({{"LANG", "de"}}), QStringList("de"));
  EXPECT_EQ(wantedIn({{"LANG", "fr_FR.UTF-8"}, {"LC_MESSAGES", "de_DE.UTF-8"}}), german);
  EXPECT_EQ(wantedIn({{"LC_MESSAGES", "fr_FR.UTF-8"}, {"LC_ALL", "de_DE.UTF-8"}}), german);
}

TEST(Translations, AreWantedInTheOrderOfTheUsersList) {
  EXPECT_EQ(wantedIn({{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "fr:de_AT:de"}}),
            (QStringList{"fr", "de_AT", "de"}));
  EXPECT_EQ(wantedIn({{"LANGUAGE", "de"}}), QStringList("de"));
}

TEST(Translations, AreNotWantedBehindEnglishWhichTheSourcesAreIn) {
  EXPECT_EQ(wantedIn({}), QStringList());
  EXPECT_EQ(wantedIn({{"LANG", "en_US.UTF-8"}}), QStringList());
  EXPECT_EQ(wantedIn({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "en"}}), QStringList());
  EXPECT_EQ(wantedIn({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "fr:en_GB:de"}}), QStringList("fr"));
}

TEST(Translations, AreNotWantedInTheLocaleC) {
  for (const char* plain : {"C", "C.UTF-8", "POSIX"})
    EXPECT_EQ(wantedIn({{"LANG", plain}, {"LANGUAGE", "de"}}), QStringList()) << plain;
}

TEST(Translations, ComeFromTheFirstFolderThatHasTheWantedLanguage) {
  const QTemporaryDir empty;
  setEnvironment({{"LANG", "de_AT.UTF-8"}});
  EXPECT_FALSE(installTranslation("lookout", {empty.path()}));
  EXPECT_EQ(QCoreApplication::translate("Lookout::MainWindow", "Log"), "Log");
  EXPECT_TRUE(installTranslation("lookout", {empty.path(), ownTexts()}));
  EXPECT_EQ(QCoreApplication::translate("Lookout::MainWindow", "Log"), "Protokoll");
  setEnvironment({{"LANG", "tlh"}});
  EXPECT_FALSE(installTranslation("lookout", {ownTexts()}));
}

TEST(Translations, OfAPluginLieBesideItUnderItsName) {
  const SeveralPlugins plugins({"my_plugin"});
  ASSERT_TRUE(QFile::copy(ownTexts() + "/periscope_de.qm", plugins.path() + "/my_plugin_de.qm"));
  const auto stage = [] { return QCoreApplication::translate("Stage", "Stage"); };
  setEnvironment({{"LANG", "C"}});
  { const PluginCatalog english(plugins.path()); }
  EXPECT_EQ(stage(), "Stage");
  setEnvironment({{"LANG", "de_DE.UTF-8"}});
  const PluginCatalog german(plugins.path());
  EXPECT_EQ(stage(), "Bühne");
}

TEST(Translations, OfAPluginMayLieBesideTheHosts) {
  setEnvironment({{"LANG", "de_DE.UTF-8"}});
  const SeveralPlugins plugins({"periscope"});
  const PluginCatalog catalog(plugins.path());
  EXPECT_EQ(QCoreApplication::translate("Stage", "Stage"), "Bühne");
}

TEST(Translations, MakeTheWindowGerman) {
  speakGerman();
  const SettingsOfTest settings;
  const MainWindow window(FIXTURES "/good", "", MainWindow::Past::Ignored);
  const QStringList texts = textsOf(window);
  for (const char* text : {"&Roboter", "&Verbinden ...", "Roboter &schließen", "&Protokoll",
                           "Kein Roboter ist verbunden.", "Plug-ins: 2 geladen",
                           "Mit einem Roboter verbinden ...", "robotless_plugin ö&ffnen"})
    EXPECT_TRUE(texts.contains(text)) << text;
}

TEST(Translations, MakeADockGerman) {
  speakGerman();
  const SettingsOfTest settings;
  MainWindow window(FIXTURES "/good", "", MainWindow::Past::Ignored);
  window.show();
  TcpRobot robot;
  RobotDock* dock = window.connectTo(robot.address());
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name() + " (wird verbunden)");
  ASSERT_TRUE(waitUntil([&] { return dock->session().state() == RobotSession::State::Connected; }));
  EXPECT_TRUE(
      waitUntil([&] { return dock->findChild<StatusLine*>()->text().contains("Verbunden"); }));
  robot.stop();
  ASSERT_TRUE(waitUntil([&] { return dock->session().state() == RobotSession::State::Lost; }));
  EXPECT_EQ(dock->windowTitle(), "working_plugin " + robot.name() + " (Verbindung verloren)");
}

TEST(Translations, MakeQtsOwnButtonsGermanWhereItsTextsAreInstalled) {
  setEnvironment({{"LANG", "de_DE.UTF-8"}});
  if (!installTranslation("qtbase", {QLibraryInfo::path(QLibraryInfo::TranslationsPath)}))
    GTEST_SKIP() << "Qt's German is not installed";
  const QDialogButtonBox box(QDialogButtonBox::Cancel);
  EXPECT_EQ(box.button(QDialogButtonBox::Cancel)->text().remove('&'), "Abbrechen");
}

TEST(Translations, LeaveTheWindowEnglishInTheLocaleC) {
  setEnvironment({{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}});
  installTranslations();
  const SettingsOfTest settings;
  const MainWindow window(FIXTURES "/good", "", MainWindow::Past::Ignored);
  const QStringList texts = textsOf(window);
  for (const char* text :
       {"&Robot", "&Connect...", "C&lose robot", "&Log", "No robot is connected.",
        "Plug-ins: 2 loaded", "&Open robotless_plugin"})
    EXPECT_TRUE(texts.contains(text)) << text;
}

class KeysOfMenus : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Languages, KeysOfMenus, testing::Values("en", "de"));

TEST_P(KeysOfMenus, AreGivenOnce) {
  setEnvironment({{"LANGUAGE", GetParam()}});
  installTranslations();
  const SettingsOfTest settings;
  const SeveralPlugins plugins({"periscope", "other_plugin"});
  MainWindow window(plugins.path(), "", MainWindow::Past::Ignored);
  EXPECT_EQ(keysTwiceIn(window), QStringList());
  const TcpRobot robot;
  window.connectTo(robot.address());  // menus name it, and list its plug-ins
  EXPECT_EQ(keysTwiceIn(window), QStringList());
}

TEST(Translations, GiveNoKeyOfADialogTwice) {
  speakGerman();
  const SettingsOfTest settings;
  const ConnectDialog connecting;
  const PreferencesDialog preferences;
  for (const QWidget* dialog :
       {static_cast<const QWidget*>(&connecting), static_cast<const QWidget*>(&preferences)}) {
    QStringList keys;
    for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>())
      keys << QKeySequence::mnemonic(button->text()).toString();
    for (const QLabel* label : dialog->findChildren<QLabel*>())
      if (label->buddy() != nullptr) keys << QKeySequence::mnemonic(label->text()).toString();
    keys.removeAll(QString());
    EXPECT_GE(keys.size(), 2);
    EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(' ').toStdString();
  }
}
