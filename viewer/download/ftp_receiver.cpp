// SPDX-License-Identifier: Apache-2.0
#include "viewer/download/ftp_receiver.h"

#include <QPointer>
#include <algorithm>

#include "viewer/download/curl_loop.h"

namespace {

// libcurl takes up to a hundred of them in a turn of the event loop: small enough for the window to
// be painted in between, large enough for a fast network.
constexpr long kBufferBytes = 64 * 1024;

// Of telling the progress and of watching it.
constexpr std::chrono::milliseconds kPeriod{40};
constexpr std::chrono::seconds kFarewellLimit{2};

}  // namespace

FtpReceiver::FtpReceiver(const CurlLoop& loop, CURL* transfer, QIODevice* device,
                         std::chrono::milliseconds silence, qint64 atMost)
    : fLoop(loop), fDevice(device), fSilenceLimit(silence), fLeft(atMost) {
  curl_easy_setopt(transfer, CURLOPT_BUFFERSIZE, kBufferBytes);
  curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, &FtpReceiver::onData);
  curl_easy_setopt(transfer, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(transfer, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(transfer, CURLOPT_XFERINFOFUNCTION, &FtpReceiver::onProgress);
  curl_easy_setopt(transfer, CURLOPT_XFERINFODATA, this);
  connect(&fTimer, &QTimer::timeout, this, &FtpReceiver::watch);
  fTimer.start(kPeriod);
}

bool FtpReceiver::finish() {
  fTimer.stop();
  const QPointer<FtpReceiver> self(this);
  tellProgress();
  return !self.isNull();
}

// libcurl would notice a silent server only after its mean speed of some seconds has gone down. And
// periods are counted, not time: while we wait for our own disk nobody else is silent.
void FtpReceiver::watch() {
  if (++fSilentPeriods * kPeriod < fSilenceLimit) return tellProgress();
  fTimer.stop();
  emit fellSilent();
}

void FtpReceiver::tellProgress() {
  if (fReadBytes == fToldBytes) return;
  fToldBytes = fReadBytes;
  emit progressed(fReadBytes, fTotalBytes);
}

std::size_t FtpReceiver::onData(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& receiver = *static_cast<FtpReceiver*>(self);
  receiver.fSilentPeriods = 0;
  const auto come = static_cast<qint64>(size) * static_cast<qint64>(count);
  const qint64 wanted = std::min(come, receiver.fLeft);
  receiver.fIsCut = wanted < come;
  receiver.fLeft -= wanted;
  qint64 written = 0;
  // A device that takes only a part says why with the rest.
  for (qint64 part = 1; part > 0 && written < wanted; written += part)
    part = std::max(receiver.fDevice->write(bytes + written, wanted - written), qint64{0});
  receiver.fLastByte = std::chrono::steady_clock::now();
  return static_cast<std::size_t>(written);
}

int FtpReceiver::onProgress(void* self, curl_off_t total, curl_off_t done, curl_off_t /*toSend*/,
                            curl_off_t /*sent*/) {
  auto& receiver = *static_cast<FtpReceiver*>(self);
  receiver.fReadBytes = done;
  receiver.fTotalBytes = total;
  // Only after the last byte does libcurl hold up the event loop, until the server has answered.
  const auto since = std::max(receiver.fLastByte, receiver.fLoop.enteredAt());
  return std::chrono::steady_clock::now() - since > kFarewellLimit ? 1 : 0;
}
