// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/gl_surface.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <utility>

namespace {

QByteArray rendererName() {
  QOpenGLContext context;
  QOffscreenSurface surface;
  surface.create();
  if (!context.create() || !context.makeCurrent(&surface)) return {};
  return reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
}

// Renderers that compute on the main processor say so by their names.
bool isHardware(const QByteArray& renderer) {
  const QByteArray name = renderer.toLower();
  for (const char* software : {"llvmpipe", "softpipe", "swrast", "software", "swiftshader"})
    if (name.contains(software)) return false;
  return !name.isEmpty();
}

bool findOut() {
  const QByteArray asked = qgetenv("LOOKOUT_OPENGL");
  return asked.isEmpty() ? isHardware(rendererName()) : asked != "0";
}

}  // namespace

GlSurface::GlSurface(std::function<void(QPainter&)> paint, QWidget* parent)
    : QOpenGLWidget(parent), fPaint(std::move(paint)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  lower();
}

bool GlSurface::isWorthwhile() {
  static const bool found = findOut();
  return found;
}

void GlSurface::paintGL() {
  QPainter painter(this);
  fPaint(painter);
}
