// SPDX-License-Identifier: Apache-2.0
// Paints with the graphics processor.
#pragma once

#include <QOpenGLWidget>
#include <functional>

class QPainter;

// Covers its parent, below what else lies there, and leaves the mouse to it. GUI thread.
class GlSurface : public QOpenGLWidget {
  Q_OBJECT

 public:
  // `paint` is called with a painter in device-independent pixels.
  GlSurface(std::function<void(QPainter&)> paint, QWidget* parent);

  // Whether there is OpenGL by hardware: where it is computed, painting without is quicker. Found
  // out once; LOOKOUT_OPENGL=0 or 1 in the environment says it instead.
  static bool isWorthwhile();

 protected:
  void paintGL() override;

 private:
  std::function<void(QPainter&)> fPaint;
};
