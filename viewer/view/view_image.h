// SPDX-License-Identifier: Apache-2.0
// The picture area of the viewer.
#pragma once

#include <QFrame>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "viewer/core/model.h"
#include "viewer/view/lettering.h"
#include "viewer/view/nearest_sampling.h"

class QImage;
class QPainter;
class QPixmap;

// Shows the model's frame, the overlay items over it, and the frame's time, rate and date below it;
// an invitation while there is no frame. 640 x 480 pixels, fixed.
//
// The model is not kept alive: once it is gone the view paints nothing. GUI thread only, but for
// updateThreadSafe().
class ViewImage : public QFrame {
  Q_OBJECT

 public:
  ViewImage(boost::shared_ptr<const Model> model, QWidget* parent);
  ~ViewImage() override;

  // Wraps the model's current frame; to be called once before the view is shown.
  void init();

  // Asks for a repaint. Thread-safe.
  void updateThreadSafe();

  // Since the view was made, each new picture counted once; when the newest was painted; and the
  // rate that is shown.
  std::uint64_t framesPainted() const { return fFramesPainted; }
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const { return fLastPainted; }
  double shownFrameRate() const { return static_cast<double>(fFrameRate); }

 signals:
  void updateWidget();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // What one paint shows. The place belongs to the pixels, whatever the camera thread does
  // meanwhile.
  struct Frame;

  Frame takeFrame(const Model& model);
  void wrapFrame(const Model& model, int width, int height);
  void paintInvitation(QPainter& painter) const;
  void paintFrame(QPainter& painter, const Frame& frame, const Model& model)
      ZU_REQUIRES(model.fObjectsMutex);
  void measureFrameRate(const Model& model);
  QString dateText();

  boost::weak_ptr<const Model> fModel;
  std::unique_ptr<QImage> fImage;  // wraps the model's buffer without a copy
  NearestSampling fSampling;
  std::int64_t fLastTimestamp = 0;
  std::int32_t fImageWidth = 0;  // for which fImage was built
  float fFrameRate = 0;
  Lettering fLettering;
  QString fDate;
  std::uint32_t fDateSeconds = 0;  // that fDate says
  std::uint64_t fFramesPainted = 0;
  std::optional<std::chrono::steady_clock::time_point> fLastPainted;
};
