// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_keeper.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLocale>
#include <chrono>
#include <cmath>

#include "viewer/stage/keep_folder.h"
#include "viewer/stage/picture_file.h"
#include "viewer/stage/stage_scene.h"

namespace {

constexpr double kUsualRate = 30;

std::int64_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

}  // namespace

StageKeeper::StageKeeper(StageScene& scene, QString robot, QObject* parent)
    : QObject(parent), fScene(scene), fRobot(std::move(robot)) {
  connect(&fFilm, &FilmRecorder::progressed, this, &StageKeeper::filmChanged);
  connect(&fFilm, &FilmRecorder::ended, this, &StageKeeper::finishFilm);
}

// ---- pictures

void StageKeeper::save(bool withOverlays) {
  if (!fScene.frame()) return emit said(tr("There is no picture to save yet."), false);
  const QString path = freeFileName(keepFolder(), keptName(fRobot), ".png");
  const PictureWriter* writer = PictureWriter::write(fScene.image(withOverlays), path);
  connect(writer, &PictureWriter::ended, this, [this, path](const QString& problem) {
    if (problem.isEmpty())
      emit said(tr("Saved: %1").arg(path), true);
    else
      emit said(problem, false);
  });
}

void StageKeeper::copy() {
  if (!fScene.frame()) return emit said(tr("There is no picture to copy yet."), false);
  QGuiApplication::clipboard()->setImage(fScene.image(true));
  emit said(tr("Copied what is seen."), true);
}

void StageKeeper::askForFolder(QWidget* parent) {
  auto* dialog = new QFileDialog(parent, tr("Where pictures and films are saved"), keepFolder());
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    setKeepFolder(folder);
    emit said(tr("Pictures and films are saved in %1").arg(folder), true);
  });
  dialog->open();
}

// ---- films

bool StageKeeper::beginFilm(double framesPerSecond) {
  fFilmSize = FilmRecorder::evenSize(fScene.viewport().view());
  const double rate = framesPerSecond > 0 ? framesPerSecond : kUsualRate;
  const QString problem =
      fFilm.begin(keepFolder(), fRobot, fFilmSize, static_cast<int>(std::lround(rate)));
  if (!problem.isEmpty()) emit said(problem, false);
  emit filmChanged();
  addToFilm();
  return problem.isEmpty();
}

void StageKeeper::addToFilm() {
  if (!fFilm.isFilming() || !fScene.frame()) return;
  fFilm.add(fScene.imageOf(fFilmSize), now());
}

void StageKeeper::endFilm() {
  addToFilm();  // a picture that stood still lasts until now
  fFilm.end();
  emit filmChanged();
}

void StageKeeper::finishFilm(const QString& path, const QString& error) {
  if (error.isEmpty())
    emit said(tr("Film saved: %1").arg(path), true);
  else
    emit said(error, false);
  emit filmChanged();
}

QString StageKeeper::filmText() const {
  if (!fFilm.isFilming()) return {};
  const qint64 seconds = fFilm.duration() / 1000;
  const QString text =
      tr("Filming %1:%2, %3")
          .arg(seconds / 60)
          .arg(seconds % 60, 2, 10, QChar('0'))
          .arg(QLocale().formattedDataSize(fFilm.bytes(), 1, QLocale::DataSizeSIFormat));
  if (fFilm.dropped() == 0) return text;
  return (fFilm.dropped() == 1 ? tr("%1, %2 picture missing") : tr("%1, %2 pictures missing"))
      .arg(text)
      .arg(fFilm.dropped());
}
