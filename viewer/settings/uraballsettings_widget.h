// SPDX-License-Identifier: Apache-2.0
// The panel of the ball detector's tuning.
#pragma once

#include <QWidget>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "viewer/settings/custom_slider.h"

class Module;
class QBoxLayout;
class QCheckBox;
namespace Ky {
class KyValue;
}

// 400 x 600 pixels; complete, but not among the viewer's tabs. Sliders show what the detector says
// when the panel is built and write when the user lets go of them; the boxes start unchecked. Does
// nothing once the module is gone. GUI thread.
class UraballSettingsWidget : public QWidget {
  Q_OBJECT

 public:
  UraballSettingsWidget(boost::shared_ptr<Module> module, QWidget* parent);

  // The group of all controls.
  QWidget* otherParametersWidget();
  // An empty group, reserved: nothing shows it.
  QWidget* initParametersWidget();
  // The first slider of this name, or null.
  QCustomSlider* xGetCustomSlider(std::string name);

 public slots:
  void onChangedYComponent();
  void onChangedUComponent();
  void onChangedVComponent();
  void onChangedMinRadiusComponent();
  // Writes the smallest and the largest radius; the panel shows and edits their difference.
  void onChangedRadiusRangeComponent();
  void onChangedSensibComponent();
  void onChangedSeuilComponent();
  // Check states, of which 2 means checked.
  void onChangedTracking(int state);
  void onChangedDepMaxComponent();
  void onChangedMultipleBallsTracking(int state);
  void onChangedOptimisation(int state);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  struct Control;
  void xAddSlider(QBoxLayout* layout, const Control& control);
  QCheckBox* xAddCheckBox(QBoxLayout* layout, const char* text, const char* slot);
  // Shows the detector's value, or says on standard output why it can't.
  void xShowValue(const Control& control);
  int xPosition(const char* name);
  void xWriteSlider(const char* parameter, const char* name);
  void xWriteBox(const char* parameter, int state);
  void xWrite(const char* parameter, Ky::KyValue value);

  boost::weak_ptr<Module> fModule;
  QCustomSliders fSliders;
  QCheckBox* fTracking = nullptr;
  QCheckBox* fMultipleBalls = nullptr;
  QCheckBox* fOptimisation = nullptr;
};
