// SPDX-License-Identifier: Apache-2.0
#include "viewer/view/view_image.h"

#include <QDateTime>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include "viewer/view/frame_rate.h"
#include "viewer/view/overlay_painter.h"
#include "viewer/view/placement.h"

namespace {

QString timestampText(std::int64_t timestamp, float frameRate) {
  return "Timestamp: " + QString::number(static_cast<double>(timestamp) / 1000000, 'f', 6) +
         " seconds,  fps: " + QString::number(static_cast<double>(frameRate), 'f', 1);
}

void paintOverlays(QPainter& painter, Lettering& lettering, const Model& model,
                   const QSizeF& pictureSize, const QRectF& view) ZU_REQUIRES(model.fObjectsMutex) {
  for (const auto& [source, manager] : model.fObjects) {
    for (const auto& [name, item] : manager.fObjects)
      paintOverlay(painter, lettering, item, pictureSize, view);
  }
}

}  // namespace

struct ViewImage::Frame {
  Placement placement;
  QPixmap picture;
};

ViewImage::ViewImage(boost::shared_ptr<const Model> model, QWidget* parent)
    : QFrame(parent, Qt::WindowFlags()), fModel(model) {
  setFixedSize(640, 480);
  setFrameStyle(QFrame::Panel);
  setAccessibleName(tr("Camera picture"));
  connect(this, SIGNAL(updateWidget()), this, SLOT(update()));
}

ViewImage::~ViewImage() = default;

void ViewImage::init() {
  const auto model = fModel.lock();
  if (!model) return;
  const Ky::KyCriticalSectionWrite lock(model->fImageMutex);
  wrapFrame(*model, model->fWidth, model->fHeight);
}

void ViewImage::updateThreadSafe() {
  emit updateWidget();
}

void ViewImage::paintEvent(QPaintEvent*) {
  const auto model = fModel.lock();
  if (!model) return;
  const Ky::KyCriticalSection lock(model->fObjectsMutex);

  QPainter painter(this);
  fLettering.begin(painter);
  const Frame frame = takeFrame(*model);
  if (frame.picture.isNull()) {
    paintInvitation(painter);
  } else {
    paintFrame(painter, frame, *model);
  }
}

// Copies the pixels, so that they can't change while they are painted.
ViewImage::Frame ViewImage::takeFrame(const Model& model) {
  const Ky::KyCriticalSectionWrite lock(model.fImageMutex);
  const int width = model.fWidth;
  const int height = model.fHeight;
  if (!fImage || fImageWidth != width) {
    wrapFrame(model, width, height);
    fImageWidth = width;
  }
  const Placement placement = placementFor(width, height);
  if (width <= 0 || height <= 0 || fImage->isNull()) return {placement, QPixmap()};
  return {placement, placement.scaled ? fSampling.scaled(*fImage, placement.pictureSize)
                                      : QPixmap::fromImage(*fImage)};
}

void ViewImage::wrapFrame(const Model& model, int width, int height) {
  fImage = std::make_unique<QImage>(model.fImageData, width, height, QImage::Format_ARGB32);
}

void ViewImage::paintInvitation(QPainter& painter) const {
  painter.fillRect(0, 0, width(), height(), Qt::black);
  painter.setPen(Qt::white);
  painter.drawText(QRect(0, 0, width(), height()), Qt::AlignHCenter | Qt::AlignVCenter,
                   tr("> Press start <"));
}

void ViewImage::paintFrame(QPainter& painter, const Frame& frame, const Model& model) {
  const auto& [placement, picture] = frame;
  painter.translate(placement.origin);
  painter.drawPixmap(0, 0, picture);
  paintOverlays(painter, fLettering, model, picture.size(),
                QRectF(rect()).translated(-placement.origin));
  painter.translate(-placement.origin);

  measureFrameRate(model);
  // In the pen that the last overlay item left.
  fLettering.drawCentred(painter, placement.timestampLine,
                         timestampText(fLastTimestamp, fFrameRate));
  fLettering.drawCentred(painter, placement.dateLine, dateText());
  painter.setPen(Qt::darkGray);
  fLettering.drawCentred(painter, placement.noteLine,
                         "Frame rate in Lookout may be\n limited by network bandwidth.");
}

// Made once a second: asking for the local time costs more than drawing it.
QString ViewImage::dateText() {
  const auto seconds = static_cast<std::uint32_t>(fLastTimestamp / 1000000);
  if (fDate.isEmpty() || seconds != fDateSeconds) {
    fDate = "Date: " + QDateTime::fromSecsSinceEpoch(seconds).toString(Qt::ISODate);
    fDateSeconds = seconds;
  }
  return fDate;
}

void ViewImage::measureFrameRate(const Model& model) {
  const std::int64_t timestamp = model.fTimestamp;
  const bool isNew = timestamp != fLastTimestamp;
  fLastTimestamp = timestamp;
  if (isNew) {
    ++fFramesPainted;
    fLastPainted = std::chrono::steady_clock::now();
  }
  fFrameRate = static_cast<float>(ComputeCurrentFrameRate(isNew));
}
