// SPDX-License-Identifier: Apache-2.0
// Which part of a picture is seen, how large, and which way up.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QTransform>

// A picture of some size in a view of some size. Positions in the picture are in its pixels, (0, 0)
// the top-left corner of the first one; positions in the view are in device pixels, so that 1:1 is
// a pixel of the screen for a pixel of the picture. It is turned first, then mirrored, then scaled.
//
// Either it fits, as large as there is room, or it has a scale of its own, and a point of it stands
// in the view's middle: its own middle where there is more room than picture, and otherwise none
// that would bring an edge of the picture into the view. Thread-bound.
class Viewport {
 public:
  static constexpr double kLeastScale = 1.0 / 16;
  static constexpr double kMostScale = 64;

  void setPicture(QSize size);
  void setView(QSize size);
  QSize picture() const { return fPicture; }
  QSize view() const { return fView; }

  // Device pixels for a pixel of the picture; 1 while there is no picture or no view.
  double scale() const;
  bool isFitted() const { return fFitted; }
  void fit();
  // What stood at `at` stays there.
  void zoomTo(double scale, QPointF at);
  void zoomBy(double factor, QPointF at) { zoomTo(scale() * factor, at); }
  void panBy(QPointF distance);

  int quarters() const { return fQuarters; }  // clockwise, 0..3
  bool isMirrored() const { return fMirrored; }
  void turn(int quarters);  // adds them
  void setMirrored(bool mirrored);

  // From the picture to the view. Whole device pixels at 1:1 and beyond.
  QTransform toView() const;
  QTransform toPicture() const;
  // Of the whole picture, in the view.
  QRectF pictureRect() const;

  // Whether each pixel of the picture is shown as it is: at 1:1, and from 4:1 on.
  bool isExact() const;

  // What a user has set, to be kept: scale (0: fitted), middle as fractions of the picture, turns.
  struct State {
    double scale = 0;
    QPointF middle = {0.5, 0.5};
    int quarters = 0;
    bool mirrored = false;

    bool operator==(const State&) const = default;
  };
  State state() const;
  void setState(const State& state);

 private:
  QSizeF turnedPicture() const;
  double fittingScale() const;
  void keepInside();

  QSize fPicture;
  QSize fView;
  bool fFitted = true;
  double fScale = 1;
  QPointF fMiddle = {0.5,
                     0.5};  // fractions of the turned picture, which stand in the view's middle
  int fQuarters = 0;
  bool fMirrored = false;
};
