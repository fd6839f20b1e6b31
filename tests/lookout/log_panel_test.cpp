// SPDX-License-Identifier: Apache-2.0
#include "log/log_panel.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTreeView>
#include <thread>

#include "support/wait.h"

using Lookout::LogModel;
using Lookout::LogPanel;
using zu::log::Level;

namespace {

zu::log::Record record(const std::string& text, Level level = Level::info) {
  return {level, "test", "here", text, std::chrono::system_clock::time_point{}};
}

QString textOf(const QAbstractItemModel& model, int row) {
  return model.index(row, LogModel::Text).data().toString();
}

}  // namespace

TEST(LogModel, CountsALineThatIsRepeatedInsteadOfAddingIt) {
  LogModel model(10);
  model.append({record("a"), record("a"), record("a"), record("b"), record("a")});
  ASSERT_EQ(model.rowCount(), 3);
  EXPECT_EQ(textOf(model, 0), "a (x 3)");
  EXPECT_EQ(textOf(model, 1), "b");
  EXPECT_EQ(textOf(model, 2), "a");
}

TEST(LogModel, CountsAPairOfLinesThatGoesOn) {
  LogModel model(10);
  for (int i = 0; i < 20; ++i) model.append({record("a"), record("b")});
  ASSERT_EQ(model.rowCount(), 4);
  EXPECT_EQ(textOf(model, 0), "a");
  EXPECT_EQ(textOf(model, 1), "b");
  EXPECT_EQ(textOf(model, 2), "a (x 19)");
  EXPECT_EQ(textOf(model, 3), "b (x 19)");
  model.append({record("c"), record("a"), record("b"), record("c"), record("b"), record("a")});
  EXPECT_EQ(model.rowCount(), 10) << "no pair comes twice in a row";
}

TEST(LogModel, TakesLinesThatDifferInAnythingButTheTimeAsDifferent) {
  LogModel model(10);
  auto other = record("a");
  other.function = "there";
  auto category = other;
  category.category = "else";
  model.append({record("a"), record("a", Level::error), other, category});
  EXPECT_EQ(model.rowCount(), 4);
  auto later = category;
  later.time += std::chrono::hours(1);
  model.append({later});
  ASSERT_EQ(model.rowCount(), 4);
  auto subject = later;
  subject.subject = "tam:9559";
  model.append({subject});
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.index(3, LogModel::Time).data().toString(), "01:00:00.000");
}

TEST(LogModel, KeepsTheNewestLines) {
  LogModel model(100);
  for (int i = 0; i < 250; ++i) model.append({record(std::to_string(i))});
  ASSERT_EQ(model.rowCount(), 100);
  EXPECT_EQ(textOf(model, 0), "150");
  EXPECT_EQ(textOf(model, 99), "249");
}

TEST(LogModel, ShowsALineOfSeveralLinesInOneRow) {
  LogModel model(10);
  model.append({record("one\ntwo", Level::warning)});
  EXPECT_EQ(textOf(model, 0), "one two");
  EXPECT_EQ(model.index(0, LogModel::Severity).data().toString(), "warning");
  EXPECT_EQ(model.index(0, LogModel::Origin).data().toString(), "test.here");
  EXPECT_EQ(model.index(0, LogModel::Text).data(Qt::ToolTipRole).toString(), "one\ntwo");
}

TEST(LogModel, NamesWhatALineIsAboutBesideItsPlace) {
  LogModel model(10);
  auto line = record("a");
  line.subject = "tam:9559";
  model.append({line});
  EXPECT_EQ(model.index(0, LogModel::Origin).data().toString(), "test.here (tam:9559)");
  EXPECT_EQ(model.line(0), "00:00:00.000 info test.here (tam:9559): a");
}

TEST(LogPanel, ShowsWhatOtherThreadsWrite) {
  LogPanel panel;
  std::thread([] { zu::log::error("test", "thread") << "from elsewhere"; }).join();
  EXPECT_EQ(panel.model().rowCount(), 0);  // widgets are for this thread only
  ASSERT_TRUE(waitUntil([&] { return panel.model().rowCount() == 1; }));
  EXPECT_EQ(textOf(panel.model(), 0), "from elsewhere");
}

TEST(LogPanel, StaysBoundedInAFlood) {
  zu::log::setConsoleLevel(Level::silent);
  LogPanel panel;
  const int lines = 3 * LogPanel::kCapacity;
  for (int i = 0; i < lines; ++i) zu::log::info("test", "flood") << i;
  ASSERT_TRUE(waitUntil([&] { return panel.model().rowCount() > 0; }));
  EXPECT_EQ(panel.model().rowCount(), LogPanel::kCapacity);
  EXPECT_EQ(textOf(panel.model(), LogPanel::kCapacity - 1), QString::number(lines - 1));
}

TEST(LogPanel, FiltersByLevel) {
  LogPanel panel;
  zu::log::debug("test", "here") << "debug";
  zu::log::info("test", "here") << "info";
  zu::log::warning("test", "here") << "warning";
  zu::log::error("test", "here") << "error";
  ASSERT_TRUE(waitUntil([&] { return panel.model().rowCount() == 4; }));
  EXPECT_EQ(panel.shownLines(), 3);
  panel.showLevel(Level::error);
  EXPECT_EQ(panel.shownLines(), 1);
  panel.showLevel(Level::warning);
  EXPECT_EQ(panel.shownLines(), 2);
  panel.showLevel(Level::debug);
  EXPECT_EQ(panel.shownLines(), 4);
}

TEST(LogPanel, CopiesTheSelectedLinesOrAllThatAreShown) {
  LogPanel panel;
  for (const char* text : {"one", "two", "three"}) zu::log::info("test", "here") << text;
  zu::log::debug("test", "here") << "hidden";
  ASSERT_TRUE(waitUntil([&] { return panel.model().rowCount() == 4; }));
  panel.copy();
  const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
  ASSERT_EQ(lines.size(), 3);
  EXPECT_TRUE(lines[0].endsWith(" info test.here: one"));
  EXPECT_TRUE(lines[2].endsWith(" info test.here: three"));

  auto* view = panel.findChild<QTreeView*>();
  view->selectionModel()->select(view->model()->index(1, 0),
                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
  panel.copy();
  EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(" info test.here: two"));
  EXPECT_FALSE(QGuiApplication::clipboard()->text().contains("one"));

  panel.clear();
  EXPECT_EQ(panel.shownLines(), 0);
}

TEST(LogPanel, FollowsTheEndUnlessScrolledUp) {
  LogPanel panel;
  panel.resize(400, 200);
  panel.show();
  auto* view = panel.findChild<QTreeView*>();
  const auto lastIsVisible = [&] {
    const QModelIndex last = view->model()->index(view->model()->rowCount() - 1, 0);
    return view->viewport()->rect().intersects(view->visualRect(last));
  };
  for (int i = 0; i < 100; ++i) zu::log::info("test", "here") << i;
  ASSERT_TRUE(waitUntil([&] { return panel.shownLines() == 100; }));
  EXPECT_TRUE(lastIsVisible());
  view->scrollToTop();
  zu::log::info("test", "here") << "more";
  ASSERT_TRUE(waitUntil([&] { return panel.shownLines() == 101; }));
  EXPECT_FALSE(lastIsVisible());
}
