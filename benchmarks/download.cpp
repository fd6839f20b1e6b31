// SPDX-License-Identifier: Apache-2.0
// How fast does a recording come home, against the curl command, while a window is repainted 30
// times a second? The real FTP server; what the download dialog does with the progress is done too.
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPainter>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "robot/ftp/ftp_server.h"
#include "support/process.h"
#include "targets.h"
#include "viewer/download/ftp_client.h"

namespace {

constexpr int kBytes = 1 << 30;
constexpr int kRounds = 5;
constexpr int kFps = 30;

// Paints a picture of the viewer's size, always another one.
class Window : public QWidget {
 public:
  Window() : fImage(640, 480, QImage::Format_RGB32) {
    setFixedSize(fImage.size());
    connect(&fTimer, &QTimer::timeout, this, [this] { update(); });
    fTimer.setTimerType(Qt::PreciseTimer);
    fTimer.start(1000 / kFps);
  }
  int takePaints() { return std::exchange(fPaints, 0); }

 protected:
  void paintEvent(QPaintEvent*) override {
    fImage.fill(QColor::fromHsv(++fPaints % 360, 255, 255));
    QPainter(this).drawImage(0, 0, fImage);
  }

 private:
  QImage fImage;
  QTimer fTimer;
  int fPaints = 0;
};

double curlSeconds(const robot::FtpServer& server, const QString& local) {
  QElapsedTimer timer;
  timer.start();
  Process curl("curl", {"-s", "--noproxy", "*", "-u", "tam:secret", "-o", local.toStdString(),
                        "ftp://" + server.address().toString() + "/film"});
  if (curl.waitForExit(std::chrono::minutes(2)) != 0) throw std::runtime_error("curl failed");
  return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double clientSeconds(const robot::FtpServer& server, const QString& local) {
  QElapsedTimer timer;
  timer.start();
  QProgressDialog dialog;
  FtpClient client;
  QFile file(local);
  QEventLoop loop;
  bool isDone = false;
  QObject::connect(&client, &FtpClient::dataTransferProgress, &dialog,
                   [&](qint64 done, qint64 total) {
                     dialog.setMaximum(static_cast<int>(total));
                     dialog.setValue(static_cast<int>(done));
                   });
  QObject::connect(&client, &FtpClient::commandFinished, &loop, [&](int, bool error) {
    isDone = !error && client.currentCommand() == FtpClient::Get;
    if (error || isDone) loop.quit();
  });
  dialog.show();
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) throw std::runtime_error("no file");
  client.connectToHost("127.0.0.1", static_cast<quint16>(server.address().port));
  client.login("tam", "secret");
  client.get("film", &file);
  loop.exec();
  if (!isDone || file.size() != kBytes) throw std::runtime_error("the download failed");
  return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure() {
  const QTemporaryDir home, desktop;
  const QString film = home.filePath("film");
  QFile::setPermissions(home.path(), QFile::Permissions(0x7755));
  if (!QFile(film).open(QIODevice::WriteOnly) || !QFile::resize(film, kBytes))
    throw std::runtime_error("no film");
  const robot::FtpServer server({.listen = {.host = "127.0.0.1", .port = 0},
                                 .user = "tam",
                                 .password = "secret",
                                 .home = home.path().toStdString()});
  const QString local = desktop.filePath("film.avi");
  Window window;
  window.show();
  clientSeconds(server, local);  // whatever is allocated and read only once
  const double memory = bench::residentMegabytes();

  std::vector<double> ratios, painted;
  for (int round = 0; round < kRounds; ++round) {
    QFile::remove(local);
    const double curl = curlSeconds(server, local);
    QFile::remove(local);
    window.takePaints();
    const double ours = clientSeconds(server, local);
    painted.push_back(window.takePaints() / ours);
    ratios.push_back(curl / ours);
    std::printf("1 GiB: curl %.2f s, download %.2f s\n", curl, ours);
  }
  bench::atLeast("download throughput against curl's", median(ratios), 0.9);
  bench::atLeast("repaints a second of 30 during a download", median(painted), 29);
  bench::atMost("MB grown by downloads of 5 GiB", bench::residentMegabytes() - memory, 2);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  try {
    measure();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "download: %s\n", error.what());
    return 1;
  }
}
