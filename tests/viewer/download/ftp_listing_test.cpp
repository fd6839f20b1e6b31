// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_listing.h"

#include <gtest/gtest.h>

namespace {

std::string errorOf(const QByteArray& text) {
  const FtpListing listing = parseFtpListing(text);
  EXPECT_TRUE(listing.error.isEmpty() || listing.entries.empty());
  return listing.error.toStdString();
}

}  // namespace

TEST(FtpListing, HasFilesAndFoldersAndNothingElse) {
  const FtpListing listing = parseFtpListing(
      "type=cdir;sizd=4096;modify=20261122042505;UNIX.mode=0755; .\r\n"
      "type=pdir;sizd=4096;modify=20261122042505; ..\r\n"
      "type=file;size=5000000000;modify=20261122042505;unique=fe00ga720a7; a b;c=d.jpg\r\n"
      "Type=Dir;Sizd=4096;Modify=20261122042506.123; old\n"
      "type=OS.unix=slink:;size=7;modify=20261122042505; link\n"
      "\r\n"
      "type=file;  v\xC3\xAD"
      "deo.avi");
  EXPECT_EQ(listing.error, "");
  ASSERT_EQ(listing.entries.size(), 3U);
  EXPECT_EQ(listing.entries[0].name, "a b;c=d.jpg");
  EXPECT_EQ(listing.entries[0].size, 5000000000);
  EXPECT_EQ(listing.entries[0].time, QDateTime(QDate(2026, 11, 22), QTime(4, 25, 5), Qt::UTC));
  EXPECT_FALSE(listing.entries[0].isFolder);
  EXPECT_EQ(listing.entries[1].name, "old");
  EXPECT_TRUE(listing.entries[1].isFolder);
  EXPECT_EQ(listing.entries[1].time.time().second(), 6);
  EXPECT_EQ(listing.entries[2].name, QString::fromUtf8(" v\xC3\xAD"
                                                       "deo.avi"));
  EXPECT_EQ(listing.entries[2].size, -1);
  EXPECT_FALSE(listing.entries[2].time.isValid());
}

TEST(FtpListing, RefusesNamesThatCanNotBe) {
  const std::string kLead = "The server lists a file that can't be: ";
  EXPECT_EQ(errorOf("type=file; ../../.bashrc\r\n"), kLead + "\"../../.bashrc\".");
  EXPECT_EQ(errorOf("type=file; /etc/passwd\r\n"), kLead + "\"/etc/passwd\".");
  EXPECT_EQ(errorOf("type=file; ..\r\n"), kLead + "\"..\".");
  EXPECT_EQ(errorOf("type=dir; .\r\n"), kLead + "\".\".");
  EXPECT_EQ(errorOf("type=file; \r\n"), kLead + "\"\".");
  EXPECT_EQ(errorOf("type=file; a\x1B[2Jb\r\n"), kLead + "\"a?[2Jb\".");
  EXPECT_EQ(errorOf("type=file; a\tb\r\n"), kLead + "\"a?b\".");
  EXPECT_EQ(errorOf(QByteArray("type=file; a\0b\r\n", 16)), kLead + "\"a?b\".");
  EXPECT_EQ(errorOf("type=file; " + QByteArray(5000, 'a')),
            kLead + "\"" + std::string(60, 'a') + "\".");
}

TEST(FtpListing, RefusesWhatIsNoListing) {
  const auto error = [](const std::string& line) {
    return "The server's list of files can't be understood: \"" + line + "\".";
  };
  for (const char* line :
       {"<html>", "-rw-r--r-- 1 tam tam 3 Nov 22 04:25 a.jpg", "size=3; a.jpg", "type=file",
        "type=file;size=-3; a", "type=file;size=much; a", "type=file;size=99999999999999999999; a"})
    EXPECT_EQ(errorOf(line), error(line));
  EXPECT_EQ(errorOf("type=file; good.jpg\r\nbad"), error("bad"));
}

TEST(FtpListing, BelievesNoImpossibleTime) {
  for (const char* time : {"", "2026", "20261322042505", "20261122256161", "not a time, you see"}) {
    const FtpListing listing =
        parseFtpListing("type=file;modify=" + QByteArray(time).replace(' ', '_') + "; a\r\n");
    ASSERT_EQ(listing.entries.size(), 1U) << time;
    EXPECT_FALSE(listing.entries[0].time.isValid()) << time;
  }
}

TEST(FtpListing, HasAnEnd) {
  QByteArray text;
  for (int i = 0; i < 20000; ++i)
    text += "type=file;size=1; clip_" + QByteArray::number(i) + ".avi\r\n";
  EXPECT_EQ(parseFtpListing(text).entries.size(), 20000U);
  EXPECT_EQ(errorOf(text + "type=file; one more\r\n"),
            "There are too many files in the folder to list them.");
}
