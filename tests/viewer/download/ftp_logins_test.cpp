// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_logins.h"

#include <gtest/gtest.h>

#include "viewer/download/ftp_config.h"

using Dk::FtpConfig;
using Dk::FtpLogin;

TEST(FtpLogins, KnowNothingAtFirst) {
  EXPECT_FALSE(Dk::ftpLoginOf("a").isComplete());
}

TEST(FtpLogins, BeginWithThatOfTheDownloadDialog) {
  FtpConfig::a_login = "tam";
  EXPECT_FALSE(Dk::ftpLoginOf("a").isComplete());
  FtpConfig::a_password = "1";
  EXPECT_EQ(Dk::ftpLoginOf("a"), (FtpLogin{"tam", "1"}));
}

TEST(FtpLogins, AreThoseOfEachRobotAndTheDialogHasTheNewest) {
  Dk::keepFtpLogin("a", {"tam", "1"});
  Dk::keepFtpLogin("b", {"tam", "2"});
  EXPECT_EQ(Dk::ftpLoginOf("a"), (FtpLogin{"tam", "1"}));
  EXPECT_EQ(Dk::ftpLoginOf("b"), (FtpLogin{"tam", "2"}));
  EXPECT_EQ(FtpConfig::a_login, "tam");
  EXPECT_EQ(FtpConfig::a_password, "2");
}

TEST(FtpLogins, AreForgottenWhenTheyAreRefused) {
  Dk::keepFtpLogin("a", {"tam", "1"});
  Dk::keepFtpLogin("b", {"tam", "2"});
  Dk::dropFtpLogin("a", {"tam", "0"});  // one of before
  EXPECT_EQ(Dk::ftpLoginOf("a"), (FtpLogin{"tam", "1"}));
  Dk::dropFtpLogin("b", {"tam", "2"});
  EXPECT_FALSE(Dk::ftpLoginOf("b").isComplete());
  EXPECT_EQ(FtpConfig::a_login + FtpConfig::a_password, "");
  EXPECT_EQ(Dk::ftpLoginOf("a"), (FtpLogin{"tam", "1"}));
}
