// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/viewport.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kAlmost = 1e-6;

bool isPositive(QSize size) {
  return size.width() > 0 && size.height() > 0;
}

// Everything but the scale and the place: from the picture to the turned one, whose top-left corner
// is (0, 0).
QTransform turning(QSizeF picture, int quarters, bool mirrored) {
  QTransform transform;
  const bool lies = quarters % 2 != 0;
  const QSizeF turned = lies ? picture.transposed() : picture;
  transform.translate(turned.width() / 2, turned.height() / 2);
  if (mirrored) transform.scale(-1, 1);
  transform.rotate(90 * quarters);
  transform.translate(-picture.width() / 2, -picture.height() / 2);
  return transform;
}

}  // namespace

void Viewport::setPicture(QSize size) {
  fPicture = size;
  keepInside();
}

void Viewport::setView(QSize size) {
  fView = size;
  keepInside();
}

QSizeF Viewport::turnedPicture() const {
  return fQuarters % 2 == 0 ? QSizeF(fPicture) : QSizeF(fPicture).transposed();
}

double Viewport::fittingScale() const {
  if (!isPositive(fPicture) || !isPositive(fView)) return 1;
  const QSizeF picture = turnedPicture();
  return std::min(fView.width() / picture.width(), fView.height() / picture.height());
}

double Viewport::scale() const {
  return fFitted ? fittingScale() : fScale;
}

void Viewport::fit() {
  fFitted = true;
  fMiddle = {0.5, 0.5};
}

void Viewport::zoomTo(double scale, QPointF at) {
  if (!isPositive(fPicture) || !isPositive(fView) || !std::isfinite(scale)) return;
  const QPointF held = toPicture().map(at);
  // Zooming out of a large picture may begin below the least scale.
  const double least = std::min(kLeastScale, fittingScale());
  fScale = std::clamp(scale, least, kMostScale);
  fFitted = false;
  keepInside();
  panBy(at - toView().map(held));
}

void Viewport::panBy(QPointF distance) {
  if (fFitted || !isPositive(fPicture)) return;
  const QSizeF shown = turnedPicture() * fScale;
  fMiddle -= QPointF(distance.x() / shown.width(), distance.y() / shown.height());
  keepInside();
}

// A picture that is smaller than the view stands in its middle; of a larger one no edge comes
// further in than the view's.
void Viewport::keepInside() {
  if (fFitted || !isPositive(fPicture) || !isPositive(fView)) return;
  const QSizeF shown = turnedPicture() * fScale;
  const auto kept = [](double middle, double shownLength, double viewLength) {
    const double half = viewLength / shownLength / 2;
    return half >= 0.5 ? 0.5 : std::clamp(middle, half, 1 - half);
  };
  fMiddle = {kept(fMiddle.x(), shown.width(), fView.width()),
             kept(fMiddle.y(), shown.height(), fView.height())};
}

void Viewport::turn(int quarters) {
  const QPointF held = state().middle;
  fQuarters = ((fQuarters + quarters) % 4 + 4) % 4;
  State turned = state();
  turned.middle = held;
  setState(turned);
}

void Viewport::setMirrored(bool mirrored) {
  State now = state();
  now.mirrored = mirrored;
  setState(now);
}

QTransform Viewport::toView() const {
  const double factor = scale();
  const QSizeF shown = turnedPicture() * factor;
  QPointF corner(fView.width() / 2.0 - fMiddle.x() * shown.width(),
                 fView.height() / 2.0 - fMiddle.y() * shown.height());
  // Pixels that are shown as they are begin on the screen's.
  if (isExact()) corner = QPointF(std::round(corner.x()), std::round(corner.y()));
  QTransform placing;
  placing.translate(corner.x(), corner.y());
  placing.scale(factor, factor);
  return turning(fPicture, fQuarters, fMirrored) * placing;
}

QTransform Viewport::toPicture() const {
  return toView().inverted();
}

QRectF Viewport::pictureRect() const {
  return toView().mapRect(QRectF(QPointF(0, 0), QSizeF(fPicture)));
}

bool Viewport::isExact() const {
  const double factor = scale();
  return std::abs(factor - 1) < kAlmost || factor > 4 - kAlmost;
}

Viewport::State Viewport::state() const {
  State state;
  state.scale = fFitted ? 0 : fScale;
  const QTransform unit = turning({1, 1}, fQuarters, fMirrored).inverted();
  state.middle = unit.map(fMiddle);
  state.quarters = fQuarters;
  state.mirrored = fMirrored;
  return state;
}

void Viewport::setState(const State& state) {
  fFitted = !(state.scale > 0) || !std::isfinite(state.scale);
  if (!fFitted) fScale = std::clamp(state.scale, kLeastScale / 16, kMostScale);
  fQuarters = (state.quarters % 4 + 4) % 4;
  fMirrored = state.mirrored;
  const bool isPlace = std::isfinite(state.middle.x()) && std::isfinite(state.middle.y());
  fMiddle = fFitted || !isPlace ? QPointF(0.5, 0.5)
                                : turning({1, 1}, fQuarters, fMirrored).map(state.middle);
  keepInside();
}
