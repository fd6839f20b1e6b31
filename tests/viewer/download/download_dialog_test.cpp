// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaMethod>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <optional>

#include "lookout/settings_of_test.h"
#include "support/log_capture.h"
#include "support/modal_driver.h"
#include "support/own_network.h"
#include "support/wait.h"
#include "tests/viewer/download/robot_files.h"
#include "viewer/download/ftp_client.h"
#include "viewer/download/ftp_config.h"
#include "viewer/download/ftp_download_dialog.h"

namespace {

using Dk::FtpConfig;

constexpr auto kConnectionText =
    "Unable to connect to the FTP server at 127.0.0.1. Are you sure you are connected to a real "
    "robot, and a FTP server is running on it ?";

// A person at the desktop, with a robot that serves its home on the port of FTP.
class Download : public testing::Test {
 protected:
  void SetUp() override {
    NEED_OWN_NETWORK();
    robot.write("recordings/cameras/clip.avi", "the film");
    robot.serve(21);
    FtpConfig::a_login.clear();
    FtpConfig::a_password.clear();
    driver.on<QDialog>("Authentication required", [this](QDialog& dialog) { typeLogin(dialog); });
    for (const char* title :
         {"Connection error", "Login failed", "Download failed", "File Transfert"}) {
      driver.on<QMessageBox>(title, [this](QMessageBox& box) {
        told << box.text() << box.detailedText();
        QTest::mouseClick(box.buttons().first(), Qt::LeftButton);
      });
    }
    driver.on<QDialog>("File Transfer", [](QDialog&) {});
  }

  static void logInBefore() {
    FtpConfig::a_login = RobotFiles::kUser;
    FtpConfig::a_password = RobotFiles::kPassword;
  }
  void typeLogin(QDialog& dialog) const {
    const auto edits = dialog.findChildren<QLineEdit*>();
    QTest::keyClicks(edits[0], RobotFiles::kUser);
    QTest::keyClicks(edits[1], typedPassword);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
  }
  // What exec() ends with.
  int download(const QString& remote = "recordings/cameras/clip.avi") {
    Dk::FtpDownloadDialog dialog("127.0.0.1", remote, local, nullptr);
    if (limit) dialog.client().setTimeLimits(*limit, *limit);
    if (prepare) prepare(dialog);
    return dialog.exec();
  }
  // Does something as soon as the bar moves.
  void whenItMoves(std::function<void(Dk::FtpDownloadDialog&)> action) {
    prepare = [action](Dk::FtpDownloadDialog& dialog) {
      QObject::connect(&dialog.client(), &FtpClient::dataTransferProgress, &dialog,
                       [&dialog, action, done = false](qint64 read) mutable {
                         if (read > 0 && !std::exchange(done, true)) action(dialog);
                       });
    };
  }
  QString content() const { return QString::fromStdString(contentOf(local.toStdString())); }
  bool isFileThere() const { return QFile::exists(local); }

  RobotFiles robot;
  SettingsOfTest settings;
  QTemporaryDir folder;
  QString local = folder.filePath("clip.avi");
  ModalDriver driver;
  QStringList told;  // text and detail of each message
  QString typedPassword = RobotFiles::kPassword;
  std::function<void(Dk::FtpDownloadDialog&)> prepare;
  std::optional<std::chrono::seconds> limit;  // of the client
};

}  // namespace

TEST_F(Download, AsksForTheLoginAndBringsTheFile) {
  EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_EQ(content(), "the film");
  EXPECT_EQ(driver.seen().first(), "Authentication required");
  EXPECT_EQ(FtpConfig::a_login, RobotFiles::kUser);
  EXPECT_EQ(FtpConfig::a_password, RobotFiles::kPassword);
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(Download, DoesNotAskAgain) {
  logInBefore();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_FALSE(driver.seen().contains("Authentication required"));
}

TEST_F(Download, AsksWhenOnlyHalfOfTheLoginIsKnown) {
  FtpConfig::a_login = RobotFiles::kUser;
  EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_EQ(driver.seen().first(), "Authentication required");
}

TEST_F(Download, SaysWhatItDoes) {
  logInBefore();
  const QString odd = "<b>%1</b>";
  Dk::FtpDownloadDialog dialog("127.0.0.1", odd, local, nullptr);
  EXPECT_EQ(dialog.windowTitle(), "File Transfer");
  EXPECT_EQ(dialog.labelText(), "Downloading <b>%1</b>...");
  EXPECT_EQ(dialog.findChild<QLabel*>()->textFormat(), Qt::PlainText);
  EXPECT_FALSE(dialog.autoClose());
}

TEST_F(Download, HasItsSlotsInOrder) {
  const QMetaObject& meta = Dk::FtpDownloadDialog::staticMetaObject;
  QStringList slotNames;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
    slotNames << meta.method(i).methodSignature();
  EXPECT_EQ(slotNames, QStringList({"onCancel()", "ftpCommandFinished(int,bool)",
                                    "updateDataTransferProgress(qlonglong,qlonglong)"}));
}

TEST_F(Download, ShowsHowFarItIs) {
  logInBefore();
  constexpr int kSize = 300 << 20;
  robot.writeZeros("big", kSize);
  int maximum = 0;
  int between = 0;
  prepare = [&](Dk::FtpDownloadDialog& dialog) {
    QObject::connect(&dialog.client(), &FtpClient::dataTransferProgress, &dialog, [&] {
      maximum = std::max(maximum, dialog.maximum());
      if (dialog.value() > 0 && dialog.value() < kSize) {
        const QImage picture = dialog.findChild<QProgressBar*>()->grab().toImage();
        between += picture.isNull() ? 0 : 1;
      }
    });
  };
  EXPECT_EQ(download("big"), QDialog::Accepted);
  EXPECT_EQ(maximum, kSize);
  EXPECT_GT(between, 0);
  EXPECT_EQ(QFileInfo(local).size(), kSize);
}

TEST_F(Download, NarrowsTheProgressToAnInt) {
  logInBefore();
  Dk::FtpDownloadDialog dialog("127.0.0.1", "clip.avi", local, nullptr);
  dialog.updateDataTransferProgress(2, 4);
  EXPECT_EQ(dialog.maximum(), 4);
  EXPECT_EQ(dialog.value(), 2);
  for (const qint64 total : {qint64{3} << 30, qint64{5} << 30, qint64{1} << 62}) {
    for (const qint64 read : {total / 3, total / 2, total - 1, total}) {
      dialog.updateDataTransferProgress(read, total);
      EXPECT_EQ(dialog.maximum(), static_cast<int>(total));
      dialog.grab();
    }
  }
}

TEST_F(Download, OpensEachDialogOverTheOneBefore) {
  QWidget window;
  window.setGeometry(250, 200, 400, 300);
  window.show();
  std::map<QString, QPoint> off;  // the middle of each, seen from that of what it stands over
  const auto note = [&](const QWidget& dialog, const QWidget& under) {
    off[dialog.windowTitle()] = dialog.geometry().center() - under.geometry().center();
  };
  driver.on<QDialog>("Authentication required", [&](QDialog& login) {
    note(login, window);
    typeLogin(login);
  });
  driver.on<QDialog>("File Transfer", [&](QDialog& progress) { note(progress, window); });
  driver.on<QMessageBox>("Download failed", [&](QMessageBox& box) {
    note(box, *box.parentWidget());
    EXPECT_EQ(box.parentWidget()->windowTitle(), "File Transfer");
    box.close();
  });
  driver.on<QMessageBox>("File Transfert", [&](QMessageBox& box) {
    note(box, window);
    box.close();
  });
  Dk::FtpDownloadDialog("127.0.0.1", "missing", local, &window).exec();
  Dk::FtpDownloadDialog("127.0.0.1", "missing", folder.path(), &window).exec();
  EXPECT_EQ(off.size(), 4u);
  for (const auto& [title, distance] : off)
    EXPECT_LE(distance.manhattanLength(), 4) << title.toStdString();
}

TEST_F(Download, TellsThatThereIsNoServerOverTheLoginThatItAsksFor) {
  robot.stopServing();
  QWidget window;
  window.show();
  driver.on<QDialog>("Authentication required", [](QDialog&) {});  // thinks about it
  QString under;
  driver.on<QMessageBox>("Connection error", [&](QMessageBox& box) {
    under = box.parentWidget()->windowTitle();
    box.close();
  });
  Dk::FtpDownloadDialog("127.0.0.1", "clip.avi", local, &window).exec();
  EXPECT_EQ(under, "Authentication required");
}

TEST_F(Download, TellsThatThereIsNoServer) {
  logInBefore();
  robot.stopServing();
  EXPECT_EQ(download(), QDialog::Rejected);
  EXPECT_EQ(told, QStringList({kConnectionText, "127.0.0.1, port 21: Connection refused."}));
  EXPECT_FALSE(isFileThere());
  EXPECT_EQ(FtpConfig::a_login, RobotFiles::kUser);
}

TEST_F(Download, TellsThatThereIsNoServerWhileItAsksForTheLogin) {
  robot.stopServing();
  driver.on<QDialog>("Authentication required", [](QDialog&) {});  // thinks about it
  EXPECT_EQ(download(), QDialog::Rejected);
  EXPECT_EQ(driver.seen(), QStringList({"Authentication required", "Connection error"}));
  EXPECT_FALSE(isFileThere());
  EXPECT_EQ(FtpConfig::a_login, "");
}

TEST_F(Download, ForgetsAWrongLoginAndAsksAgain) {
  typedPassword = "wrong";
  EXPECT_EQ(download(), QDialog::Rejected);
  EXPECT_EQ(driver.seen(), QStringList({"Authentication required", "File Transfer", "Login failed",
                                        "Download failed"}));
  EXPECT_EQ(told, QStringList({"Could not login on FTP.",
                               "The server answered: 530 Login authentication failed",
                               "Could not upload " + local + ".", "Nobody is logged in."}));
  EXPECT_FALSE(isFileThere());
  EXPECT_EQ(FtpConfig::a_login + FtpConfig::a_password, "");

  typedPassword = RobotFiles::kPassword;
  EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_EQ(driver.seen().count("Authentication required"), 2);
  EXPECT_EQ(content(), "the film");
}

TEST_F(Download, EndsAtOnceWhenTheLoginIsDeclined) {
  for (const bool byWindow : {false, true}) {
    driver.on<QDialog>("Authentication required", [=](QDialog& dialog) {
      auto* cancel = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel);
      if (byWindow) {
        dialog.close();
      } else {
        QTest::mouseClick(cancel, Qt::LeftButton);
      }
    });
    EXPECT_EQ(download(), QDialog::Rejected);
    EXPECT_FALSE(isFileThere());
  }
  EXPECT_TRUE(told.isEmpty());
  EXPECT_EQ(FtpConfig::a_login, "");
}

TEST_F(Download, TellsThatTheFileCanNotBeHad) {
  logInBefore();
  robot.write("closed", "secret");
  std::filesystem::permissions(robot / "closed", std::filesystem::perms::none);
  for (const char* remote : {"missing", "closed", "recordings", "a\nDELE clip.avi"}) {
    told.clear();
    EXPECT_EQ(download(remote), QDialog::Rejected) << remote;
    ASSERT_EQ(told.size(), 2) << remote;
    EXPECT_EQ(told[0], "Could not upload " + local + ".");
    EXPECT_FALSE(isFileThere()) << remote;
  }
  EXPECT_EQ(FtpConfig::a_login, RobotFiles::kUser);
}

TEST_F(Download, TellsThatTheFileCanNotBeSaved) {
  logInBefore();
  for (const QString& unwritable :
       {folder.filePath("missing/clip.avi"), folder.path(), QString("/proc/clip.avi")}) {
    told.clear();
    local = unwritable;
    EXPECT_EQ(download(), QDialog::Rejected) << local.toStdString();
    ASSERT_EQ(told.size(), 2);
    EXPECT_TRUE(told[0].startsWith("Unable to save the file " + local + ": "))
        << told[0].toStdString();
  }
  EXPECT_EQ(driver.seen().count("File Transfert"), 3);
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(Download, TellsThatTheDiskIsFull) {
  logInBefore();
  robot.writeZeros("big", 8 << 20);
  ASSERT_EQ(mount("none", folder.path().toUtf8(), "tmpfs", 0, "size=1m"), 0);
  EXPECT_EQ(download("big"), QDialog::Rejected);
  EXPECT_EQ(told, QStringList({"Could not upload " + local + ".",
                               "The file can't be written: No space left on device."}));
  EXPECT_FALSE(isFileThere());
  umount(folder.path().toUtf8());
}

TEST_F(Download, TellsThatTheServerDied) {
  logInBefore();
  robot.writeZeros("endless", std::uintmax_t{1} << 40);
  whenItMoves([this](Dk::FtpDownloadDialog&) { robot.stopServing(); });
  EXPECT_EQ(download("endless"), QDialog::Rejected);
  EXPECT_EQ(told, QStringList({"Could not upload " + local + ".",
                               "The connection to the server was lost."}));
  EXPECT_FALSE(isFileThere());
}

TEST_F(Download, TellsThatTheServerFroze) {
  logInBefore();
  robot.writeZeros("endless", std::uintmax_t{1} << 40);
  whenItMoves([](Dk::FtpDownloadDialog&) { RobotFiles::signalSessions(SIGSTOP); });
  limit = std::chrono::seconds(1);
  EXPECT_EQ(download("endless"), QDialog::Rejected);
  EXPECT_EQ(told, QStringList(
                      {"Could not upload " + local + ".", "The server has been silent for 1 s."}));
  EXPECT_FALSE(isFileThere());
}

TEST_F(Download, IsCancelledWhileItConnects) {
  logInBefore();
  RobotFiles::signalSessions(SIGSTOP);
  prepare = [](Dk::FtpDownloadDialog& dialog) {
    QTimer::singleShot(0, &dialog, [&dialog] {
      ASSERT_NE(dialog.client().currentCommand(), FtpClient::Get);
      QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
    });
  };
  EXPECT_EQ(download(), QDialog::Rejected);
  EXPECT_TRUE(told.isEmpty());
  EXPECT_FALSE(isFileThere());
}

TEST_F(Download, IsCancelledWhileItTransfers) {
  logInBefore();
  robot.writeZeros("endless", std::uintmax_t{1} << 40);
  const std::function<void(Dk::FtpDownloadDialog&)> ways[] = {
      [](Dk::FtpDownloadDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
      },
      [](Dk::FtpDownloadDialog& dialog) { dialog.close(); },
      [](Dk::FtpDownloadDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
      [](Dk::FtpDownloadDialog& dialog) {
        RobotFiles::signalSessions(SIGSTOP);
        dialog.close();
      },
  };
  for (const auto& way : ways) {
    whenItMoves([&](Dk::FtpDownloadDialog& dialog) {
      EXPECT_TRUE(isFileThere());
      way(dialog);
    });
    EXPECT_EQ(download("endless"), QDialog::Rejected);
    EXPECT_FALSE(isFileThere());
  }
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(Download, LeavesNoHalfFileWhenItIsDestroyed) {
  logInBefore();
  robot.writeZeros("endless", std::uintmax_t{1} << 40);
  auto* dialog = new Dk::FtpDownloadDialog("127.0.0.1", "endless", local, nullptr);
  dialog->show();
  EXPECT_TRUE(waitUntil([&] { return QFileInfo(local).size() > 0; }));
  delete dialog;
  EXPECT_FALSE(isFileThere());
}

TEST_F(Download, DeletesNoDevice) {
  logInBefore();
  local = folder.filePath("device");
  ASSERT_EQ(mkfifo(local.toUtf8(), 0600), 0);
  const zu::os::UniqueFd reader(open(local.toUtf8(), O_RDONLY | O_NONBLOCK));
  EXPECT_EQ(download("missing"), QDialog::Rejected);
  EXPECT_TRUE(isFileThere());
}

TEST_F(Download, BringsAnEmptyFile) {
  logInBefore();
  robot.write("empty", "");
  EXPECT_EQ(download("empty"), QDialog::Accepted);
  EXPECT_TRUE(isFileThere());
  EXPECT_EQ(QFileInfo(local).size(), 0);
}

TEST_F(Download, OverwritesWhatIsThere) {
  logInBefore();
  QFile old(local);
  ASSERT_TRUE(old.open(QIODevice::WriteOnly));
  old.write(QByteArray(1000, 'x'));
  old.close();
  EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_EQ(content(), "the film");
}

TEST_F(Download, BringsAFileOfMoreThanFourGigabytes) {
  logInBefore();
#ifdef PERISCOPE_SANITIZED
  GTEST_SKIP() << "takes too long with sanitizers";
#endif
  constexpr std::uintmax_t kSize = (std::uintmax_t{4} << 30) + 5;
  robot.writeZeros("big", kSize);
  std::ofstream(robot / "big", std::ios::in | std::ios::ate) << "the end";
  // Written to nowhere, and counted: the disk is not what this is about.
  local = "/dev/null";
  qint64 received = 0;
  prepare = [&](Dk::FtpDownloadDialog& dialog) {
    QObject::connect(&dialog.client(), &FtpClient::dataTransferProgress, &dialog,
                     [&](qint64 read) { received = read; });
  };
  EXPECT_EQ(download("big"), QDialog::Accepted);
  EXPECT_EQ(received, static_cast<qint64>(kSize + 7));
}

TEST_F(Download, IsNotBlockedUnderRemoteControl) {
  QSettings().setValue("Preferences/remoteControl", true);
  logInBefore();
  EXPECT_EQ(download(), QDialog::Accepted);
  EXPECT_EQ(download("missing"), QDialog::Rejected);
  FtpConfig::a_password = "wrong";
  EXPECT_EQ(download(), QDialog::Rejected);
  logInBefore();
  local = folder.filePath("missing/clip.avi");
  EXPECT_EQ(download(), QDialog::Rejected);
  robot.stopServing();
  local = folder.filePath("clip.avi");
  EXPECT_EQ(download(), QDialog::Rejected);
  EXPECT_TRUE(told.isEmpty());
}

TEST_F(Download, NeverTellsThePassword) {
  const LogCapture log;
  typedPassword = "unmistakable";
  EXPECT_EQ(download(), QDialog::Rejected);
  for (const auto& record : log.records())
    EXPECT_EQ(record.text.find("unmistakable"), std::string::npos);
  EXPECT_FALSE(told.join(' ').contains("unmistakable"));
  for (const QString& file : QDir(folder.path()).entryList(QDir::Files))
    EXPECT_EQ(contentOf(folder.filePath(file).toStdString()).find("unmistakable"),
              std::string::npos);
}
