// SPDX-License-Identifier: Apache-2.0
// main() of every test program: widgets need an application, and the other tests don't mind.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("TZ", "UTC");
  qputenv("LANGUAGE", "en");  // and so do the programs that a test starts
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
