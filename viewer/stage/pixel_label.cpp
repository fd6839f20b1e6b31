// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/pixel_label.h"

#include "viewer/stage/frame_picture.h"

PixelLabel::PixelLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::RichText);
  setAccessibleName(tr("Pixel under the pointer"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setStyleSheet("QLabel { color: white; background: rgba(0, 0, 0, 170); padding: 4px 6px; }");
}

void PixelLabel::show(StageScene& scene, std::optional<QPoint> pixel) {
  const FramePtr& frame = scene.frame();
  if (!frame || !pixel || !QRect(0, 0, frame->width, frame->height).contains(*pixel)) {
    setText(tr("Point at a pixel, with the mouse or with Ctrl and the arrows"));
  } else {
    const YuvPixel yuv = yuvAt(*frame, *pixel);
    const QColor rgb = scene.picture().pixelColor(*pixel);
    setText(QString("<span style=\"background:%1\">&nbsp;&nbsp;&nbsp;&nbsp;</span>&nbsp; %2")
                .arg(rgb.name(), tr("%1, %2 &nbsp; YUV %3 %4 %5 &nbsp; RGB %6 %7 %8")
                                     .arg(pixel->x())
                                     .arg(pixel->y())
                                     .arg(yuv.y)
                                     .arg(yuv.u)
                                     .arg(yuv.v)
                                     .arg(rgb.red())
                                     .arg(rgb.green())
                                     .arg(rgb.blue())));
  }
  adjustSize();
}
