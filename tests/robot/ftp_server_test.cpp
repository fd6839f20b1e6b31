// SPDX-License-Identifier: Apache-2.0
#include "robot/ftp/ftp_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <net/if.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>

#include "ky/error.h"
#include "robot/ftp/ftp_program.h"
#include "robot/test_folder.h"
#include "support/ftp_processes.h"
#include "support/own_network.h"
#include "support/process.h"
#include "support/wait.h"

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// A folder of its own for everything that is temporary meanwhile.
class FtpServer : public testing::Test {
 protected:
  FtpServer() {
    fs::permissions(home.path(), fs::perms(0755));
    setenv("TMPDIR", temporary.path().c_str(), 1);
    options = {.listen = {.host = "127.0.0.1", .port = 0},
               .user = "tam",
               .password = "s3cret-w0rd",
               .home = home.path()};
  }
  ~FtpServer() override { unsetenv("TMPDIR"); }

  void SetUp() override {
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
    if (geteuid() != 0) GTEST_SKIP() << "the sanitizer's own thread prevents user namespaces";
#endif
#endif
  }

  void write(const std::string& name, const std::string& content) const {
    fs::create_directories((home.path() / name).parent_path());
    std::ofstream(home.path() / name) << content;
  }
  void start() {
    server = std::make_unique<robot::FtpServer>(options);
  }
  std::string refusal() {
    try {
      start();
    } catch (const Ky::KyError& error) {
      return error.what();
    }
    return "";
  }
  std::string url(const std::string& path) const {
    return "ftp://" + server->address().toString() + "/" + path;
  }
  std::unique_ptr<Process> curl(const std::string& path, const std::string& login) const {
    return std::make_unique<Process>(
        "curl", std::vector<std::string>{"-s", "--noproxy", "*", "-u", login, url(path)});
  }
  std::string fetched(const std::string& path) const {
    const auto running = curl(path, options.user + ":" + options.password);
    running->waitForExit();
    return running->output();
  }

  TestFolder home;
  TestFolder temporary;
  robot::FtpServerOptions options;
  std::unique_ptr<robot::FtpServer> server;
};

// The kernel's; only this thread's.
void giveUpAllRights() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, 2> none{};
  ASSERT_EQ(syscall(SYS_capset, &header, none.data()), 0);
}

bool isAloneInItsNetwork() {
  const std::unique_ptr<struct if_nameindex, decltype(&if_freenameindex)> all(if_nameindex(),
                                                                              &if_freenameindex);
  return all && all.get()[0].if_index != 0 && all.get()[1].if_index == 0;
}

// A client that connects and says nothing more than it is told.
class Client {
 public:
  explicit Client(int port) : fSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
    const timeval limit{20, 0};
    setsockopt(fSocket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    connect(fSocket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address);
  }
  void say(const std::string& line) const {
    ASSERT_EQ(send(fSocket.get(), line.data(), line.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(line.size()));
  }
  // Up to and with the text; less when the server ends the connection before.
  std::string hearUntil(const std::string& text) {
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while (fHeard.find(text) == std::string::npos &&
           (count = recv(fSocket.get(), buffer.data(), buffer.size(), 0)) > 0)
      fHeard.append(buffer.data(), static_cast<std::size_t>(count));
    return fHeard;
  }
  // Waits for the end of the connection.
  bool isEnded() {
    hearUntil("something that no server says");
    char byte = 0;
    return recv(fSocket.get(), &byte, 1, 0) == 0;
  }

 private:
  zu::os::UniqueFd fSocket;
  std::string fHeard;
};

}  // namespace

TEST_F(FtpServer, ServesTheHomeToItsAccount) {
  write("recordings/cameras/clip.avi", "the film");
  start();
  EXPECT_GT(server->address().port, 0);
  EXPECT_EQ(fetched("recordings/cameras/clip.avi"), "the film");
}

TEST_F(FtpServer, LetsNobodyElseIn) {
  write("clip.avi", "the film");
  start();
  // All at once: the server takes its time to refuse.
  std::vector<std::unique_ptr<Process>> curls;
  for (const char* login : {"tam:wrong", "root:s3cret-w0rd", "anonymous:me@example.org", "ftp:ftp"})
    curls.push_back(curl("clip.avi", login));
  for (const auto& curl : curls) {
    EXPECT_EQ(curl->waitForExit(), 67);
    EXPECT_EQ(curl->output(), "");
  }
}

TEST_F(FtpServer, ShowsNothingOutsideOfTheHome) {
  TestFolder outside;
  std::ofstream(outside / "secret") << "secret";
  fs::permissions(outside.path(), fs::perms(0755));
  fs::create_symlink(outside.path(), home.path() / "link");
  write("inside", "inside");
  start();
  EXPECT_EQ(fetched("inside"), "inside");
  for (const std::string& path :
       {"/.." + (outside / "secret"), "%2f" + (outside / "secret"), std::string("link/secret")})
    EXPECT_EQ(fetched(path), "") << path;
}

TEST_F(FtpServer, ServesAHomeWithAnyName) {
  for (const char* name : {"with blank", "with:colon", "with\nbreak", "./a/./b", "h\xC3\xB6me"}) {
    options.home = home.path() / name;
    fs::create_directories(options.home);
    std::ofstream(options.home / "file") << name;
    start();
    EXPECT_EQ(fetched("file"), name);
    server.reset();
  }
}

TEST_F(FtpServer, ServesSeveralAtOnceAndAfterEachOther) {
  write("file", "content");
  start();
  Client first(server->address().port), second(server->address().port);
  EXPECT_NE(first.hearUntil("220 ").find("220"), std::string::npos);
  EXPECT_NE(second.hearUntil("220 ").find("220"), std::string::npos);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(fetched("file"), "content");
}

TEST_F(FtpServer, SendsAwayWhoeverIsTooMuch) {
  start();
  std::vector<std::unique_ptr<Client>> clients;
  for (std::size_t i = 0; i < robot::FtpServer::kMaxSessions; ++i) {
    clients.push_back(std::make_unique<Client>(server->address().port));
    ASSERT_NE(clients.back()->hearUntil("220 ").find("220 "), std::string::npos);
  }
  EXPECT_EQ(Client(server->address().port).hearUntil("\r\n"),
            "421 Too many connections, try again later.\r\n");
  clients.pop_back();
  EXPECT_TRUE(waitUntil(
      [&] { return Client(server->address().port).hearUntil("\r\n").starts_with("220"); }));
}

TEST_F(FtpServer, TakesItsSessionsWithIt) {
  start();
  Client client(server->address().port);
  client.hearUntil("220 ");
  ASSERT_FALSE(ftpProcesses().empty());
  server.reset();
  EXPECT_TRUE(client.isEnded());
  EXPECT_TRUE(ftpProcesses().empty());
}

TEST_F(FtpServer, LeavesNothingBehind) {
  start();
  EXPECT_FALSE(fs::is_empty(temporary.path()));
  server.reset();
  EXPECT_TRUE(fs::is_empty(temporary.path()));
}

TEST_F(FtpServer, KeepsThePasswordToItself) {
  start();
  Client client(server->address().port);
  client.hearUntil("220 ");
  const auto processes = ftpProcesses();
  ASSERT_FALSE(processes.empty());
  for (const pid_t pid : processes) {
    for (const char* file : {"cmdline", "environ"}) {
      const std::string shown = contentOf("/proc/" + std::to_string(pid) + "/" + file);
      EXPECT_EQ(shown.find(options.password), std::string::npos) << file;
    }
  }
  for (const auto& entry : fs::recursive_directory_iterator(temporary.path())) {
    if (!entry.is_regular_file()) continue;
    EXPECT_EQ(contentOf(entry).find(options.password), std::string::npos) << entry;
    EXPECT_NE(contentOf(entry).find("$6$"), std::string::npos) << entry;
  }
  struct stat folder {};
  ASSERT_EQ(stat(fs::directory_iterator(temporary.path())->path().c_str(), &folder), 0);
  EXPECT_EQ(folder.st_mode & 0777, 0700U);
}

TEST_F(FtpServer, InheritsNothingToItsSessions) {
  write("opened", "");
  const zu::os::UniqueFd ours(open((home / "opened").c_str(), O_RDONLY));  // without close-on-exec
  start();
  Client client(server->address().port);
  client.hearUntil("220 ");
  const auto processes = ftpProcesses();
  ASSERT_FALSE(processes.empty());
  for (const pid_t pid : processes)
    for (const auto& entry : fs::directory_iterator("/proc/" + std::to_string(pid) + "/fd"))
      EXPECT_NE(fs::read_symlink(entry), home / "opened");
}

TEST_F(FtpServer, SaysThatThePortIsTaken) {
  start();
  options.listen = server->address();
  const auto kept = std::move(server);
  EXPECT_EQ(refusal(), "the FTP server can't listen on " + options.listen.toString() +
                           ": another program has that port. Stop it, or serve on another port.");
}

TEST_F(FtpServer, SaysThatTheAddressIsNotOurs) {
  options.listen.host = "192.0.2.1";
  EXPECT_EQ(refusal(),
            "the FTP server can't listen on 192.0.2.1:0: this computer has no such address.");
}

TEST_F(FtpServer, SaysThatThePortIsNotAllowed) {
  int firstFree = 0;
  std::ifstream("/proc/sys/net/ipv4/ip_unprivileged_port_start") >> firstFree;
  if (firstFree <= 21 || isAloneInItsNetwork()) GTEST_SKIP() << "everybody may use port 21 here";
  giveUpAllRights();
  options.listen.port = 21;
  EXPECT_EQ(refusal(),
            "the FTP server can't listen on 127.0.0.1:21: this user may not use ports as low as "
            "21. Start the robot as root, or allow it with 'sysctl "
            "net.ipv4.ip_unprivileged_port_start=21'.");
}

TEST_F(FtpServer, ListensOnThePortOfFtpWhereItMay) {
  NEED_OWN_NETWORK();
  if (!isAloneInItsNetwork()) GTEST_SKIP() << "only in a network of our own";
  write("file", "content");
  options.listen.port = 21;
  start();
  EXPECT_EQ(server->address().toString(), "127.0.0.1:21");
  EXPECT_EQ(fetched("file"), "content");
}

TEST(FtpProgram, IsFoundWhereNormalUsersDoNotLook) {
  setenv("PATH", "/nowhere", 1);
  EXPECT_EQ(robot::ftpProgram("pure-ftpd"), "/usr/sbin/pure-ftpd");
}

TEST(FtpProgram, SaysWhatToInstallWhenItIsMissing) {
  try {
    robot::ftpProgram("pure-nothing");
    FAIL();
  } catch (const Ky::KyError& error) {
    EXPECT_STREQ(error.what(),
                 "the FTP server needs the program pure-nothing, which is not installed: install "
                 "Debian's package pure-ftpd");
  }
}

TEST_F(FtpServer, SaysThatThereIsNoHome) {
  options.home = home.path() / "missing";
  EXPECT_EQ(refusal(),
            "the FTP server can't serve " + options.home.string() + ": there is no such folder");
  std::ofstream(home / "file") << "";
  options.home = home.path() / "file";
  EXPECT_NE(refusal(), "");
  EXPECT_TRUE(fs::is_empty(temporary.path()));
}

TEST_F(FtpServer, RefusesUnfitUsersAndPasswords) {
  for (const char* user : {"", "a b", "a:b", "a\nb", "\xC3\xA4", "../x"}) {
    options.user = user;
    EXPECT_NE(refusal().find("can't be the FTP user"), std::string::npos) << user;
  }
  options.user = "tam";
  for (const std::string& password : {std::string(), std::string("a\nb"), std::string(129, 'x')}) {
    options.password = password;
    EXPECT_NE(refusal().find("FTP password"), std::string::npos);
  }
}

TEST_F(FtpServer, TakesPasswordsOfAllSorts) {
  write("file", "content");
  for (const std::string& password : {std::string("with blank"), std::string("$(x)\"'\\"),
                                      std::string("\xC3\xBCml\xC3\xA4ut"), std::string(128, 'x')}) {
    options.password = password;
    start();
    EXPECT_EQ(fetched("file"), "content") << password;
    server.reset();
  }
}
