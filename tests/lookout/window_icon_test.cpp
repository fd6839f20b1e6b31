// SPDX-License-Identifier: Apache-2.0
#include "window/window_icon.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

QImage pictureOf(const QIcon& icon) {
  return icon.pixmap(QSize(128, 128)).toImage();
}

}  // namespace

TEST(WindowIcon, IsThatBesideTheProgramWhereTheThemeHasNone) {
  const QIcon icon = Lookout::windowIcon(QFileInfo(LOOKOUT).path());
  ASSERT_FALSE(icon.availableSizes().isEmpty());
  EXPECT_EQ(pictureOf(icon), pictureOf(QIcon(RESOURCES "/lookout.png")));
}

TEST(WindowIcon, IsNoneWhereThereIsNone) {
  const QTemporaryDir empty;
  EXPECT_TRUE(Lookout::windowIcon(empty.path()).availableSizes().isEmpty());
}

TEST(WindowIcon, IsTheThemesWhereItHasOne) {
  const QTemporaryDir home;
  const QString folder = home.filePath("hicolor/64x64/apps");
  ASSERT_TRUE(QDir().mkpath(folder));
  QFile index(home.filePath("hicolor/index.theme"));
  ASSERT_TRUE(index.open(QIODevice::WriteOnly));
  index.write("[Icon Theme]\nName=Test\nDirectories=64x64/apps\n[64x64/apps]\nSize=64\n");
  index.close();
  QImage red(64, 64, QImage::Format_ARGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(folder + "/lookout.png"));
  const QStringList before = QIcon::themeSearchPaths();
  QIcon::setThemeSearchPaths({home.path()});
  QIcon::setThemeName("hicolor");
  const QIcon icon = Lookout::windowIcon(QFileInfo(LOOKOUT).path());
  EXPECT_EQ(pictureOf(icon).pixelColor(32, 32), QColor(Qt::red));
  QIcon::setThemeSearchPaths(before);
}
