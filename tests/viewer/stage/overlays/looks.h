// SPDX-License-Identifier: Apache-2.0
// Overlays to be drawn, and pictures to draw them on.
#pragma once

#include <QApplication>
#include <QImage>
#include <functional>
#include <memory>
#include <random>

#include "viewer/stage/overlays/stage_overlays.h"
#include "viewer/stage/viewport.h"

inline displayObject itemOf(int shape, double x, double y, int diameter,
                            const std::string& text = {}, std::uint32_t colour = 0x0000C8) {
  displayObject item;
  item.shape = shape;
  item.x = x;
  item.y = y;
  item.diameter = diameter;
  item.colour = colour;
  item.description = text;
  return item;
}

inline Moment::Source sourceOf(std::vector<displayObject> items, const std::string& key = "key") {
  Moment::Source source;
  source.set = std::make_shared<const OverlaySource>(OverlaySource{key, 0, std::move(items)});
  return source;
}

// A picture of 320 x 240, where a robot's pixel is the picture's, at this scale.
inline OverlayLook lookAt(const Viewport& viewport) {
  OverlayLook look;
  look.picture = viewport.picture();
  look.toView = viewport.toView();
  look.view = QRect(QPoint(), viewport.view());
  look.font = QApplication::font();
  return look;
}

inline Viewport viewportOf(double scale, QSize picture = {320, 240}) {
  Viewport viewport;
  viewport.setPicture(picture);
  viewport.setView(picture * scale);
  return viewport;
}

inline QImage filled(QSize size, QColor colour) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}

inline QImage noise(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  std::mt19937 random(7);
  for (int y = 0; y < size.height(); ++y)
    for (int x = 0; x < size.width(); ++x) image.setPixel(x, y, random() | 0xFF000000U);
  return image;
}

inline void drawOn(QImage& image, const std::vector<Moment::Source>& sources,
                   const OverlayLook& look, StageOverlays& overlays) {
  QPainter painter(&image);
  overlays.paint(painter, sources, look);
}

inline QImage drawn(const std::vector<Moment::Source>& sources, const OverlayLook& look,
                    QColor background = Qt::white) {
  QImage image = filled(look.view.size(), background);
  StageOverlays overlays;
  drawOn(image, sources, look, overlays);
  return image;
}

// What differs from the background.
inline QRect inked(const QImage& image, QColor background = Qt::white) {
  QRect box;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) != background.rgb()) box |= QRect(x, y, 1, 1);
  return box;
}
