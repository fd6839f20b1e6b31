// SPDX-License-Identifier: Apache-2.0
#include "plugins/plugin_catalog.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QLabel>
#include <QTableWidget>
#include <QTemporaryDir>

#include "lookout/widget_interface.h"
#include "plugins/plugins_dialog.h"
#include "several_plugins.h"
#include "support/log_capture.h"

using Lookout::Plugin;
using Lookout::PluginCatalog;

namespace {

const Plugin* find(const PluginCatalog& catalog, const QString& name) {
  for (const Plugin& plugin : catalog.plugins())
    if (plugin.name == name) return &plugin;
  return nullptr;
}

QString errorOf(const PluginCatalog& catalog, const QString& name) {
  const Plugin* plugin = find(catalog, name);
  return plugin != nullptr ? plugin->error : QString("not listed");
}

}  // namespace

TEST(PluginCatalog, LoadsWhatWorksAndChoosesTheOneForRobots) {
  const PluginCatalog catalog(FIXTURES "/good");
  ASSERT_EQ(catalog.loaded().size(), 2u);
  EXPECT_TRUE(catalog.error().isEmpty());
  ASSERT_NE(catalog.forRobots(), nullptr);
  EXPECT_EQ(catalog.forRobots()->name, "working_plugin");
  EXPECT_EQ(catalog.forRobots()->brokerName, "WorkingBroker");
  EXPECT_FALSE(find(catalog, "robotless_plugin")->interface->requiresConnection());
  EXPECT_EQ(find(catalog, "robotless_plugin")->brokerName, "");
}

TEST(PluginCatalog, ChoosesPeriscopeOfSeveralForRobotsAndTheFirstWhereItIsNot) {
  const SeveralPlugins folder({"b_plugin", "a_plugin", "periscope"});
  const PluginCatalog all(folder.path());
  QStringList names;
  for (const Plugin* plugin : all.allForRobots()) names << plugin->name;
  EXPECT_EQ(names, (QStringList{"a_plugin", "b_plugin", "periscope"}));
  EXPECT_EQ(all.forRobots()->name, "periscope");
  EXPECT_EQ(all.forRobots("b_plugin")->name, "b_plugin");
  EXPECT_EQ(all.forRobots("robotless_plugin"), nullptr);

  const SeveralPlugins others({"b_plugin", "a_plugin"});
  EXPECT_EQ(PluginCatalog(others.path()).forRobots()->name, "a_plugin");
}

TEST(PluginCatalog, KeepsTheReasonForEachFileThatIsNoPlugin) {
  LogCapture log;
  const PluginCatalog catalog(FIXTURES "/broken");
  EXPECT_EQ(catalog.plugins().size(), 4u);
  EXPECT_TRUE(catalog.loaded().empty());
  EXPECT_TRUE(errorOf(catalog, "text").startsWith("not a plug-in: "));
  EXPECT_EQ(errorOf(catalog, "other_interface_plugin"),
            "made for the interface \"com.example.SomethingElse/1.0\", but Lookout offers "
            "\"com.korvane.lookout.WidgetInterface/0.1\"");
  EXPECT_TRUE(errorOf(catalog, "missing_symbol_plugin").contains("functionThatNobodyDefines"));
  EXPECT_EQ(errorOf(catalog, "wrong_object_plugin"), "its object is not a WidgetInterface");
  // One line a file, and one that nothing is left.
  EXPECT_EQ(log.lines("lookout").size(), 5u);
}

TEST(PluginCatalog, SaysWhyThereIsNothingForRobots) {
  EXPECT_TRUE(PluginCatalog(FIXTURES "/missing").error().startsWith("There is no folder "));
  EXPECT_TRUE(PluginCatalog(FIXTURES "/empty").error().startsWith("There is no plug-in in "));
  EXPECT_TRUE(PluginCatalog(FIXTURES "/broken").error().startsWith("No plug-in in "));
}

TEST(PluginCatalog, MakesTheObjectsAnewWhenTheFolderIsLoadedAgain) {
  QPointer<QObject> root;
  {
    const PluginCatalog catalog(FIXTURES "/good");
    root = catalog.forRobots()->root;
    ASSERT_FALSE(root.isNull());
  }
  EXPECT_TRUE(root.isNull());
  const PluginCatalog again(FIXTURES "/good");
  EXPECT_NE(again.forRobots(), nullptr);
}

TEST(PluginCatalog, FindsThePluginsBesideTheProgram) {
  QTemporaryDir root;
  const QDir dir(root.path());
  dir.mkpath("bin");
  EXPECT_EQ(PluginCatalog::standardFolder(root.path() + "/bin"),
            root.path() + "/lib/lookout/plugins");
  dir.mkpath("lib/" MULTIARCH "/lookout/plugins");
  EXPECT_EQ(QFileInfo(PluginCatalog::standardFolder(root.path() + "/bin")).canonicalFilePath(),
            root.path() + "/lib/" MULTIARCH "/lookout/plugins");
}

TEST(PluginsDialog, ListsWhatWasLoadedAndWhatIsWrongWithTheRest) {
  const PluginCatalog good(FIXTURES "/good");
  const PluginCatalog broken(FIXTURES "/broken");
  Lookout::PluginsDialog fine(good);
  const auto* table = fine.findChild<QTableWidget*>();
  ASSERT_EQ(table->rowCount(), 2);
  EXPECT_EQ(table->item(1, 0)->text(), "working_plugin");
  EXPECT_EQ(table->item(1, 1)->text(), "working_plugin.so");
  EXPECT_EQ(table->item(1, 2)->text(), "loaded");

  Lookout::PluginsDialog bad(broken);
  table = bad.findChild<QTableWidget*>();
  ASSERT_EQ(table->rowCount(), 4);
  for (int row = 0; row < 4; ++row)
    EXPECT_EQ(table->item(row, 2)->text(), errorOf(broken, table->item(row, 0)->text()));
}
