// SPDX-License-Identifier: Apache-2.0
// What the stage tells of its picture: its line, and what lies over the picture.
#include <QLabel>
#include <QPushButton>

#include "ky/broker.h"
#include "viewer/core/module.h"
#include "viewer/dialogs/notice.h"
#include "viewer/stage/pixel_label.h"
#include "viewer/stage/stage.h"
#include "viewer/stage/stage_canvas.h"
#include "viewer/stage/stage_feed.h"
#include "viewer/stage/stage_keeper.h"
#include "viewer/stage/stage_line.h"

namespace {

constexpr int kGap = 8;  // between what lies over the picture and its edges

}  // namespace

void Stage::refresh() {
  const bool playing = isViewerPlaying();
  fActions.play->setText(playing ? tr("Pause") : tr("Play"));
  fActions.fullScreen->setChecked(window()->isFullScreen());
  fActions.film->setText(fKeeper->isFilming() ? tr("Stop film") : tr("Film"));
  fActions.mirror->setChecked(fCanvas->scene().viewport().isMirrored());
  const bool hasFrame = fCanvas->scene().frame() != nullptr;
  fInvitation->setVisible(!hasFrame && !playing);
  if (!playing) fFeed->look();  // figures come and go also while no picture does

  fReading =
      fMeter.update({playing, isVisible(), framesPainted(), lastPainted(), frameRateWanted()},
                    std::chrono::steady_clock::now());
  StageStatus status;
  status.picture = fReading;
  status.frozen = fActions.freeze->isChecked();
  status.size = fCanvas->scene().viewport().picture();
  status.encoding = encoding();
  status.dropped = fDropped;
  status.scale = fCanvas->scene().viewport().scale();
  fLine->show(status);
  showBadge();
  placeLabels();
}

void Stage::showBadge() {
  const bool isPaused = fReading.state == Lookout::PictureState::Paused;
  QStringList texts;
  if (fActions.freeze->isChecked())
    texts << tr("Frozen");
  else if (isPaused)
    texts << tr("Paused");
  if (fKeeper->isFilming()) texts << fKeeper->filmText();
  const QString text = texts.join(QString::fromUtf8(" \u00b7 "));
  if (text != fBadge->text()) {
    fBadge->setText(text);
    fBadge->adjustSize();
  }
  fBadge->setVisible(!text.isEmpty());
}

void Stage::showPixel() {
  fPixel->setVisible(fActions.pixel->isChecked());
  if (fActions.pixel->isChecked()) fPixel->show(fCanvas->scene(), fCanvas->pointedPixel());
  placeLabels();
}

void Stage::placeLabels() {
  fBadge->move(kGap, kGap);
  fPixel->move(kGap, fCanvas->height() - fPixel->height() - kGap);
  fInvitation->adjustSize();
  fInvitation->move((fCanvas->width() - fInvitation->width()) / 2,
                    (fCanvas->height() - fInvitation->height()) / 2);
}

QString Stage::encoding() const {
  const auto module = fModule.lock();
  if (!module) return {};
  QStringList texts;
  for (const std::string& stream : module->getParentBroker()->statistics().streams)
    texts << QString::fromStdString(stream);
  return texts.join(", ");
}

// Below the badge.
void Stage::say(const QString& text, bool isGood) {
  if (fNotice == nullptr) fNotice = new Notice(fCanvas);
  const QRect room =
      fCanvas->rect().adjusted(kGap, kGap + fBadge->sizeHint().height(), -kGap, -kGap);
  fNotice->say(isGood ? Notice::Kind::Done : Notice::Kind::Failed, text, room);
}
