// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_client.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPointer>
#include <algorithm>
#include <set>

#include "tests/viewer/download/ftp_client_fixture.h"
#include "tests/viewer/download/odd_server.h"
#include "tests/viewer/download/scripted_server.h"

TEST_F(Client, FetchesAFile) {
  connectAndLogIn();
  EXPECT_EQ(ftp.get("clip.avi", &target), 3);
  EXPECT_EQ(heard, Texts{});
  EXPECT_EQ(ftp.currentCommand(), FtpClient::ConnectToHost);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "3 get"}));
  EXPECT_EQ(errors, Texts({"", "", ""}));
  EXPECT_EQ(target.data(), "the film");
  EXPECT_EQ(ftp.currentCommand(), FtpClient::None);
}

TEST_F(Client, UsesOneConnectionForEverything) {
  connectAndLogIn();
  std::set<pid_t> sessions;
  QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [&] {
    const auto now = ftpProcesses();
    sessions.insert(now.begin(), now.end());
  });
  ftp.get("clip.avi", &target);
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(4));
  EXPECT_EQ(target.data(), "the filmthe film");
  EXPECT_EQ(sessions.size(), 1U);
}

TEST_F(Client, ConnectsBeforeAnybodyHasLoggedIn) {
  ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  ASSERT_TRUE(waitForEnds(1));
  EXPECT_EQ(heard, Texts{"1 connect"});
  ftp.login(RobotFiles::kUser, RobotFiles::kPassword);
  ASSERT_TRUE(waitForEnds(2));
  EXPECT_EQ(heard[1], "2 login");
}

TEST_F(Client, TellsThatNobodyListens) {
  const auto port = static_cast<quint16>(robot.port());
  robot.stopServing();
  ftp.connectToHost("127.0.0.1", port);
  ftp.login("a", "b");
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect failed", "2 login failed", "3 get failed"}));
  EXPECT_EQ(errors, Texts({"127.0.0.1, port " + std::to_string(port) + ": Connection refused.",
                           "There is no connection to a server.", "Nobody is logged in."}));
  EXPECT_EQ(target.data(), "");
}

TEST_F(Client, TellsThatAHostIsNone) {
  for (const char* host : {"", "no host", "a/b", "user@host", "a:b:c"}) {
    heard.clear();
    errors.clear();
    ftp.connectToHost(host);
    ASSERT_TRUE(waitForEnds(1));
    EXPECT_EQ(errors[0], "'" + std::string(host) + "' is no name of a computer.");
  }
}

TEST_F(Client, TellsThatTheServerIsNone) {
  using End = ScriptedServer::End;
  struct Case {
    std::vector<std::string> says;
    End end;
    std::string error;
  };
  const std::string kNone = "Something answers there, but not as an FTP server does.";
  const std::string kClosed = "The server closed the connection without a greeting.";
  const Case kCases[] = {
      {{"SSH-2.0-server\r\n"}, End::StayOpen, kNone},
      {{std::string(20000, '2')}, End::StayOpen, kNone},
      {{}, End::StayOpen, kNone},
      {{"220-almost\r\n"}, End::StayOpen, kNone},
      {{}, End::Close, kClosed},
      {{"220-almost\r\n"}, End::Close, kClosed},
      {{"22", "0-a\r\n", " b\r\n2"}, End::Close, kClosed},
      {{"421 Too many\r\n"}, End::Close, "The server answered: 421 Too many"},
      {{"5", "00-a\r\n", "500 No\r\n"}, End::StayOpen, "The server answered: 500 No"},
  };
  for (const Case& test : kCases) {
    const ScriptedServer server(test.says, test.end);
    heard.clear();
    errors.clear();
    ftp.setTimeLimits(std::chrono::milliseconds(400), std::chrono::seconds(1));
    ftp.connectToHost("127.0.0.1", server.port());
    ASSERT_TRUE(waitForEnds(1));
    EXPECT_EQ(errors[0], test.error) << testing::PrintToString(test.says);
  }
}

TEST_F(Client, UnderstandsAGreetingInPieces) {
  const ScriptedServer server({"2", "20-hello\r\n", "220 is no end\r", "\n"},
                              ScriptedServer::End::StayOpen);
  ftp.connectToHost("127.0.0.1", server.port());
  ASSERT_TRUE(waitForEnds(1));
  EXPECT_EQ(errors[0], "");
}

TEST_F(Client, DoesNotWaitForAServerThatNeverAnswersTheLogin) {
  const ScriptedServer server({"220 hello\r\n"}, ScriptedServer::End::StayOpen);
  ftp.setTimeLimits(std::chrono::seconds(5), std::chrono::seconds(1));
  ftp.connectToHost("127.0.0.1", server.port());
  ftp.login("a", "b");
  ASSERT_TRUE(waitForEnds(2));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login failed"}));
  EXPECT_EQ(errors[1], "The server has been silent for 1 s.");
}

TEST_F(Client, DoesNotWaitForLongForAServerThatNeverSaysThatAFileIsComplete) {
  const OddServer server("the film", OddServer::End::Unsaid);
  ftp.connectToHost("127.0.0.1", server.port());
  ftp.login("a", "b");
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "3 get failed"}));
  EXPECT_EQ(errors[2], "The server did not say that the file is complete.");
}

TEST_F(Client, DoesNotWaitForAHostThatNeverAnswers) {
  // A queue that is full answers nobody.
  const int listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* where = reinterpret_cast<sockaddr*>(&address);
  ASSERT_EQ(bind(listening, where, size), 0);
  ASSERT_EQ(listen(listening, 0), 0);
  getsockname(listening, where, &size);
  std::vector<int> clients;
  for (int i = 0; i < 4; ++i) {
    clients.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    connect(clients.back(), where, size);
  }
  ftp.setTimeLimits(std::chrono::milliseconds(300), std::chrono::seconds(1));
  ftp.connectToHost("127.0.0.1", ntohs(address.sin_port));
  EXPECT_TRUE(waitForEnds(1));
  EXPECT_EQ(errors, Texts{"127.0.0.1 does not answer."});
  for (const int client : clients) close(client);
  close(listening);
}

TEST_F(Client, TellsThatTheLoginIsWrongAndTakesTheRightOne) {
  const auto port = static_cast<quint16>(robot.port());
  ftp.connectToHost("127.0.0.1", port);
  ftp.login(RobotFiles::kUser, "wrong");
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login failed", "3 get failed"}));
  EXPECT_EQ(errors, Texts({"", "The server answered: 530 Login authentication failed",
                           "Nobody is logged in."}));
  EXPECT_EQ(refusals, (std::vector<int>{0, 530, 0}));
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(6));
  EXPECT_EQ(heard[5], "6 get");
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, HasNoConnectionAfterAWrongLogin) {
  ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  ftp.login(RobotFiles::kUser, "wrong");
  ftp.login(RobotFiles::kUser, RobotFiles::kPassword);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(errors[2], "There is no connection to a server.");
}

TEST_F(Client, IsNobodyWithoutAName) {
  ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  ftp.login("", "");
  ASSERT_TRUE(waitForEnds(2));
  EXPECT_EQ(heard[1], "2 login failed");
}

TEST_F(Client, LogsInThoughTheServerHungUpMeanwhile) {
  ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  ASSERT_TRUE(waitForEnds(1));
  RobotFiles::signalSessions(SIGKILL);
  ASSERT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  ftp.login(RobotFiles::kUser, RobotFiles::kPassword);
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(errors, Texts({"", "", ""}));
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, TellsWhatTheServerSaysOfAFileAndGoesOn) {
  robot.write("closed", "secret");
  robot.write("folder/file", "");
  std::filesystem::permissions(robot / "closed", std::filesystem::perms::none);
  connectAndLogIn();
  for (const char* file : {"missing", "closed", "folder", "folder/"}) ftp.get(file, &target);
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(7)) << testing::PrintToString(heard) << testing::PrintToString(errors);
  const std::string kLead = "The file is not there, or may not be read. The server answered: ";
  EXPECT_EQ(errors[2], kLead + "550 Can't check for file existence");
  EXPECT_EQ(errors[3], kLead + "550 Can't open closed: Permission denied");
  EXPECT_EQ(errors[4], kLead + "550 I can only retrieve regular files");
  EXPECT_EQ(errors[5], "'folder/' is no file.");
  EXPECT_EQ(heard[6], "7 get");
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, FetchesFilesWithOddNames) {
  const char* kOddNames[] = {
      "with blank",
      " begins and ends ",
      "quote's \"double\"",
      "100%",
      "%41 %2f %0a",
      "a#b?c&d;type=a",
      "\xC3\xBCml\xC3\xA4ut",
      "\xE6\x98\xA0\xE7\x94\xBB",
      "a+b=c",
      "~",
      "-l",
      "a:b",
      "[x]{y}*?",
      "$(x) `y`",
      "sub/fol der/c.avi",
      "a//b",
      "./dot/../clip2",
      "caf\xCC\x81",
      "\xF0\x9F\x8E\xA5",
  };
  connectAndLogIn();
  ASSERT_TRUE(waitForEnds(2));
  for (const char* name : kOddNames) {
    std::filesystem::create_directories(robot / "dot");
    robot.write(name, name);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const std::size_t before = heard.size();
    ftp.get(QString::fromUtf8(name), &buffer);
    ASSERT_TRUE(waitForEnds(before + 1));
    EXPECT_EQ(errors.back(), "") << name;
    EXPECT_EQ(buffer.data().toStdString(), name);
  }
}

TEST_F(Client, FetchesByAnAbsolutePathToo) {
  robot.write("films/a.avi", "a");
  connectAndLogIn();
  ftp.get("/films/a.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(target.data(), "a");
}

TEST_F(Client, LetsNoLineBreakReachTheServer) {
  ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  ftp.login("tam\r\nDELE clip.avi", "x");
  ftp.login("tam", "x\nDELE clip.avi");
  ftp.login(RobotFiles::kUser, RobotFiles::kPassword);
  for (const char* file : {"a\r\nDELE clip.avi", "a\nDELE clip.avi", "a\rDELE clip.avi", "a\tb"})
    ftp.get(file, &target);
  ftp.get(QString("a") + QChar(0) + "b", &target);
  ftp.get("", &target);
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(11));
  const std::string login = "A user name or password can't contain line breaks.";
  const std::string file = "A file whose name contains line breaks can't be downloaded.";
  EXPECT_EQ(errors,
            Texts({"", login, login, "", file, file, file, file, file, "'' is no file.", ""}));
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, FetchesAnEmptyFile) {
  robot.write("empty", "");
  std::vector<std::pair<qint64, qint64>> told;
  QObject::connect(&ftp, &FtpClient::dataTransferProgress, &ftp,
                   [&](qint64 done, qint64 total) { told.emplace_back(done, total); });
  connectAndLogIn();
  ftp.get("empty", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(errors[2], "");
  EXPECT_EQ(target.data(), "");
  EXPECT_EQ(told, (std::vector<std::pair<qint64, qint64>>{{0, 0}}));
}

TEST_F(Client, TellsHowFarItIs) {
  constexpr qint64 kSize = 200 << 20;
  robot.writeZeros("big", kSize);
  std::vector<qint64> told;
  qint64 unknown = 0;
  QObject::connect(&ftp, &FtpClient::dataTransferProgress, &ftp, [&](qint64 done, qint64 total) {
    told.push_back(done);
    unknown += total == kSize ? 0 : 1;
  });
  connectAndLogIn();
  QFile nowhere("/dev/null");
  ASSERT_TRUE(nowhere.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  ftp.get("big", &nowhere);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(errors[2], "");
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.back(), kSize);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_LE(unknown, 1);  // before the first byte
}

namespace {

// A file that the client is in the middle of.
class ClientInTransfer : public Client {
 protected:
  ClientInTransfer() {
    robot.writeZeros("endless", std::uintmax_t{1} << 40);
    nowhere.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    QObject::connect(&ftp, &FtpClient::dataTransferProgress, &ftp,
                     [this](qint64 done, qint64) { progress = done; });
    ftp.setTimeLimits(std::chrono::seconds(5), std::chrono::seconds(1));
    connectAndLogIn();
    ftp.get("endless", &nowhere);
    EXPECT_TRUE(waitUntil([this] { return progress > 0; }));
  }

  QFile nowhere{"/dev/null"};
  qint64 progress = 0;
};

}  // namespace

TEST_F(ClientInTransfer, TellsThatTheServerDied) {
  RobotFiles::signalSessions(SIGKILL);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard[2], "3 get failed");
  EXPECT_EQ(errors[2], "The connection to the server was lost.");
}

TEST_F(ClientInTransfer, TellsThatTheServerFroze) {
  RobotFiles::signalSessions(SIGSTOP);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard[2], "3 get failed");
  EXPECT_EQ(errors[2], "The server has been silent for 1 s.");
}

TEST_F(ClientInTransfer, EndsWithoutAWordWhenAborted) {
  RobotFiles::signalSessions(SIGSTOP);  // nobody is there to say farewell to
  ftp.get("clip.avi", &target);
  ftp.abort();
  EXPECT_EQ(ftp.currentCommand(), FtpClient::None);
  const qint64 before = progress;
  RobotFiles::signalSessions(SIGCONT);
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
  EXPECT_EQ(heard.size(), 2U);
  EXPECT_EQ(progress, before);
}

TEST_F(ClientInTransfer, ConnectsAnewAfterAnAbort) {
  ftp.abort();
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(5));
  EXPECT_EQ(errors.back(), "");
  EXPECT_EQ(target.data(), "the film");
}

TEST_F(Client, IsAbortedAtAnyTime) {
  for (int stage = 0; stage < 3; ++stage) {
    heard.clear();
    connectAndLogIn();
    ftp.get("clip.avi", &target);
    if (stage > 0) {
      ASSERT_TRUE(waitForEnds(static_cast<std::size_t>(stage)));
    }
    ftp.abort();
    ftp.connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
    ASSERT_TRUE(waitForEnds(static_cast<std::size_t>(stage) + 1));
    EXPECT_EQ(errors.back(), "");
    ftp.abort();
  }
}

TEST_F(Client, MayBeDeletedByWhoeverHearsIt) {
  for (int end = 1; end <= 3; ++end) {
    auto* client = new FtpClient;
    int count = 0;
    QObject::connect(client, &FtpClient::commandFinished, client, [&, client] {
      if (++count == end) delete client;
    });
    client->connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
    client->login(RobotFiles::kUser, RobotFiles::kPassword);
    client->get("clip.avi", &target);
    EXPECT_TRUE(waitUntil([&] { return count == end; }));
  }
  EXPECT_TRUE(waitUntil([] { return ftpProcesses().empty(); }));
}

TEST_F(Client, MayBeAbortedByWhoeverHearsIt) {
  QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [this](int id) {
    if (id == 2) ftp.abort();
  });
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(2));
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(5));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "4 connect", "5 login", "6 get"}));
}

// Of a small file there is only the last one.
TEST_F(Client, MayBeDeletedByWhoeverHearsTheProgress) {
  QPointer<FtpClient> client = new FtpClient;
  QObject::connect(client, &FtpClient::dataTransferProgress, &ftp, [&] { delete client; });
  client->connectToHost("127.0.0.1", static_cast<quint16>(robot.port()));
  client->login(RobotFiles::kUser, RobotFiles::kPassword);
  client->get("clip.avi", &target);
  EXPECT_TRUE(waitUntil([&] { return client.isNull() && ftpProcesses().empty(); }));
}

// What is given then is not taken for what was aborted.
TEST_F(Client, MayBeAbortedAndGivenCommandsByWhoeverHearsTheProgress) {
  QObject::connect(&ftp, &FtpClient::dataTransferProgress, &ftp, [this] {
    ftp.abort();
    ftp.get("clip.avi", &target);
  });
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "4 get failed"}));
}

TEST_F(Client, MayBeAbortedAndGivenCommandsByWhoeverHearsTheEnd) {
  QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [this](int id) {
    if (id != 2) return;
    ftp.abort();
    ftp.get("clip.avi", &target);
  });
  connectAndLogIn();
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(heard, Texts({"1 connect", "2 login", "3 get failed"}));
}

TEST_F(Client, WaitsForWhoeverHearsIt) {
  // As a modal dialog in a slot does: the next command begins only afterwards.
  QObject::connect(&ftp, &FtpClient::commandFinished, &ftp, [this](int id) {
    if (id != 1) return;
    EXPECT_FALSE(waitUntil([this] { return heard.size() > 1; }, std::chrono::milliseconds(200)));
    EXPECT_EQ(ftp.currentCommand(), FtpClient::ConnectToHost);
  });
  connectAndLogIn();
  ASSERT_TRUE(waitForEnds(2));
}

TEST_F(Client, TellsThatTheDeviceTakesNoMore) {
  robot.writeZeros("big", 8 << 20);
  QFile full("/dev/full");
  ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
  connectAndLogIn();
  ftp.get("big", &full);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(errors[2], "The file can't be written: No space left on device.");
}

TEST_F(Client, AsksNoProxy) {
  qputenv("ftp_proxy", "127.0.0.1:1");
  qputenv("ALL_PROXY", "127.0.0.1:1");
  connectAndLogIn();
  ftp.get("clip.avi", &target);
  ASSERT_TRUE(waitForEnds(3));
  EXPECT_EQ(target.data(), "the film");
}
