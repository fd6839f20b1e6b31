// SPDX-License-Identifier: Apache-2.0
// Where the stage's picture is seen and moved.
#pragma once

#include <QWidget>
#include <chrono>
#include <cstdint>
#include <optional>

#include "viewer/stage/stage_scene.h"

class GlSurface;

// Paints a scene, zooms with the wheel around the pointer and pans by dragging. What lies over the
// picture (labels, buttons) are its children. GUI thread.
class StageCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit StageCanvas(QWidget* parent = nullptr);

  StageScene& scene() { return fScene; }
  const StageScene& scene() const { return fScene; }
  void setShown(Moment::Shown shown);
  // To be called after a change of the scene.
  void refresh();

  // Around the pointer while it is over the picture, otherwise around the middle.
  void zoomBy(double factor);
  void zoomTo(double scale);
  void fit();
  // By parts of the view.
  void panBy(double right, double down);
  void turn(int quarters);
  void setMirrored(bool mirrored);
  void restoreView(const Viewport::State& state);

  void setHistogramShown(bool shown);
  bool isHistogramShown() const { return fHistogramShown; }

  // The pixel of the picture under the pointer, or the one that was last pointed at by keys.
  std::optional<QPoint> pointedPixel() const { return fPointed; }
  // By so many pixels of the picture; from its middle while none is pointed at.
  void movePointed(QPoint distance);

  // Each picture that was captured once, as often as the robot may send it.
  std::uint64_t framesPainted() const { return fFramesPainted; }
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const { return fLastPainted; }

 signals:
  // What is seen of the picture, or how.
  void viewChanged();
  void pointed();
  void doubleClicked();
  // A picture that had not been painted before.
  void painted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QPointF toDevice(QPointF position) const { return position * devicePixelRatioF(); }
  QPointF zoomMiddle() const;
  void pointAt(QPointF position);
  void noteView();
  void paint(QPainter& painter);
  void paintHistogramBox(QPainter& painter);
  void countFrame();

  StageScene fScene;
  GlSurface* fSurface = nullptr;  // null where the canvas is painted without OpenGL
  bool fHistogramShown = false;
  std::optional<QPoint> fPointed;
  std::optional<QPointF> fPointer;   // while it is here, in the widget's coordinates
  std::optional<QPointF> fDragFrom;  // the same, while a button is down
  std::uint64_t fPaintedNumber = 0;
  std::optional<std::int64_t> fPaintedTimestamp;
  std::uint64_t fFramesPainted = 0;
  std::optional<std::chrono::steady_clock::time_point> fLastPainted;
};
