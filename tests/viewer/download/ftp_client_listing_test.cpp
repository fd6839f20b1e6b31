// SPDX-License-Identifier: Apache-2.0
// What a client hears of folders, and of the beginnings of files.
#include <algorithm>

#include "tests/viewer/download/ftp_client_fixture.h"
#include "tests/viewer/download/odd_server.h"

namespace {

Texts namesOf(const std::vector<FtpEntry>& entries) {
  Texts names;
  for (const FtpEntry& entry : entries) names.push_back(entry.name.toStdString());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

TEST_F(Client, ListsAFolder) {
  robot.write("recordings/cameras/a b.jpg", "abc");
  robot.write(
      "recordings/cameras/v\xC3\xAD"
      "deo.avi",
      "");
  robot.write("recordings/cameras/older/c.avi", "");
  std::filesystem::create_symlink("/etc/passwd", robot / "recordings/cameras/link");
  using std::chrono::seconds;
  std::filesystem::last_write_time(
      robot / "recordings/cameras/a b.jpg",
      std::chrono::file_clock::from_sys(std::chrono::sys_time<seconds>(seconds(1700000000))));
  connectAndLogIn();
  EXPECT_EQ(ftp.list("recordings/cameras"), 3);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard[2], "3 list") << errors[2];
  EXPECT_EQ(namesOf(ftp.entries()), Texts({"a b.jpg", "older",
                                           "v\xC3\xAD"
                                           "deo.avi"}));
  for (const FtpEntry& entry : ftp.entries()) {
    EXPECT_EQ(entry.isFolder, entry.name == "older");
    if (entry.name != "a b.jpg") continue;
    EXPECT_EQ(entry.size, 3);
    EXPECT_EQ(entry.time.toSecsSinceEpoch(), 1700000000);
  }
}

TEST_F(Client, ListsWithOrWithoutASlashAndFetchesAfterwards) {
  robot.write("sub/fol der%20/x.jpg", "");
  connectAndLogIn();
  std::vector<Texts> found;
  QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [&] {
    if (ftp.currentCommand() == FtpClient::List) found.push_back(namesOf(ftp.entries()));
  });
  for (const char* folder : {"", "/", "sub/", "/sub", "sub/fol der%20", "."}) ftp.list(folder);
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(9));
  const Texts home{"clip.avi", "sub"};
  const Texts sub{"fol der%20"};
  EXPECT_EQ(found, (std::vector<Texts>{home, home, sub, sub, {"x.jpg"}, home}));
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, TellsThatAFolderIsNotThereAndGoesOn) {
  connectAndLogIn();
  ftp.list("recordings/cameras");
  ftp.list("a\r\nDELE clip.avi");
  ftp.get("nothing", &target);
  ftp.list("");
  ASSERT_TRUE(waitForEnds(6));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "3 list failed", "4 list failed", "5 get failed",
                          "6 list"}));
  EXPECT_EQ(errors[2], "The server answered: 550 Can't check for file existence");
  EXPECT_EQ(errors[3], "A folder whose name contains line breaks can't be listed.");
  EXPECT_EQ(refusals, (std::vector<int>{0, 0, 550, 0, 550, 0}));
  EXPECT_EQ(namesOf(ftp.entries()), Texts{"clip.avi"});
}

TEST_F(Client, ListsNothingForNobody) {
  ftp.list("");
  ASSERT_TRUE(waitForEnds(1));
  EXPECT_EQ(errors, Texts{"Nobody is logged in."});
}

TEST_F(Client, BelievesNoListingThatCanNotBe) {
  using End = OddServer::End;
  struct Case {
    std::string says;
    End end;
    std::string error;
  };
  const Case kCases[] = {
      {"type=file; ../up\r\n", End::Good, "The server lists a file that can't be: \"../up\"."},
      {"type=file; clip_1.avi\r\n", End::None, "The server's list of files has no end."},
      {"a", End::None, "The server's list of files has no end."},
      {"type=file; clip_1.avi\r\n", End::Unsaid,
       "The server did not say that the file is complete."},
      {"hello\r\n", End::Good, "The server's list of files can't be understood: \"hello\"."},
  };
  for (const Case& test : kCases) {
    const OddServer server(test.says, test.end);
    heard.clear();
    errors.clear();
    ftp.connectToHost("127.0.0.1", server.port());
    ftp.login("a", "b");
    ftp.list("");
    ASSERT_TRUE(waitForEnds(3));
    EXPECT_EQ(errors[2], test.error);
    EXPECT_TRUE(ftp.entries().empty());
  }
}

TEST_F(Client, FetchesTheBeginningOfAFile) {
  robot.write("long", std::string(300000, 'a') + std::string(3000000, 'b'));
  connectAndLogIn();
  ftp.get("long", &target, 300000);
  ftp.list("");
  ASSERT_TRUE(waitForEnds(4));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "3 get", "4 list failed"}));
  EXPECT_EQ(errors[2], "");
  EXPECT_EQ(errors[3], "Nobody is logged in.");
  EXPECT_FALSE(ftp.isLoggedIn());
  EXPECT_EQ(target.data(), QByteArray(300000, 'a'));
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); })) << "the connection is still there";
  connectAndLogIn();
  ftp.get("clip.avi", &target, 8);  // all of it
  ftp.list("");
  ASSERT_TRUE(waitForEnds(8));
  EXPECT_EQ(heard.back(), "8 list");
  EXPECT_TRUE(ftp.isLoggedIn());
  EXPECT_EQ(target.data().right(9), "athe film");
}
