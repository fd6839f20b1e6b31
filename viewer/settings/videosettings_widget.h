// SPDX-License-Identifier: Apache-2.0
// The panel of the robot's camera: format, exposure, gain, white balance, picture adjustments,
// flips, the choice of the camera, and the detections.
#pragma once

#include <QJsonObject>
#include <QWidget>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "viewer/settings/custom_slider.h"

class Module;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QTabWidget;

// 400 x 600 pixels. What it offers depends on the camera's model (1 or 2), asked for once. Does
// nothing once the module is gone. GUI thread.
class VideoSettingsWidget : public QWidget {
  Q_OBJECT

 public:
  VideoSettingsWidget(boost::shared_ptr<Module> module, QWidget* parent);

  // The group of all controls.
  QWidget* otherParametersWidget();
  // A group of initialization parameters, reserved: nothing shows it, nothing is connected.
  QWidget* initParametersWidget();
  // What of the robot's camera is this viewer's own choice: camera, resolution, frame rate, colour,
  // detections. Parameters that the robot keeps for everybody are not in it.
  QJsonObject saveState() const;
  // Sets it again as clicks would, in the order in which people go about it. What is missing, or
  // not offered here, stays as it is.
  void restoreState(const QJsonObject& state);
  // Sets one of "size" ("640x480"), "fps" ("1".. as the slider goes), "detect" (a kind, which is
  // switched on) and "camera" ("0", "1") as a click would. Empty when it is set, or else why not.
  QString choose(const QString& setting, const QString& value);

  // The first slider of this name, or null.
  QCustomSlider* xGetCustomSlider(std::string name);

 public slots:
  // Switches to the other camera.
  void onSwitchCameraSelected();
  // Switches to a camera and brings every control in line with it.
  void onCameraSelect(int camera);
  // These receive a Qt check state, of which 2 means checked.
  void onAutoGain(int state);
  void onAutoWhiteBalance(int state);
  void onAutoExposition(int state);
  void onVerticalFlip(int state);
  void onHorizontalFlip(int state);
  void onColorSpace(int state);
  void onBallDetection(int state);
  void onDuckDetection(int state);
  void onMarkDetection(int state);
  void onFaceDetection(int state);
  void onLogoDetection(int state);
  void onPictureRecognition(int state);
  // The largest resolution comes with at most 5 frames per second.
  void xOnChangeSize(int pResolution);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // Building; the robot is asked for what the controls show.
  void xAddResolution(QBoxLayout* layout);
  void xAddDetections(QBoxLayout* layout);
  void xAddDetection(QBoxLayout* layout, const char* text, const char* kind, const char* slot);
  void xAddExposureAndGain(QBoxLayout* layout);
  void xAddWhiteBalance(QBoxLayout* layout);
  void xAddPicture(QBoxLayout* layout);
  void xAddSlider(QBoxLayout* layout, const std::string& name, int parameter, bool activation,
                  int minimum, int maximum);
  QCheckBox* xAddCheckBox(QBoxLayout* layout, const char* text, const char* slot);
  QCheckBox* xAddParameterBox(QBoxLayout* layout, const char* text, int parameter,
                              const char* slot);

  // Following the robot.
  void xRefreshSlider(const std::string& name, int parameter, bool enable);
  void xFollowSlider(const std::string& name, int parameter, bool enable);
  void xFollowBox(QCheckBox* box, int parameter);
  void xOfferExposureCorrection();
  bool xIsOn(int parameter) const;
  void xWrite(int parameter, int value) const;
  void xDetect(const char* kind, int state) const;

  // Empty, or why not.
  QString xChooseSize(const QString& size);
  QString xChooseRate(const QString& rate);
  QString xChooseDetection(const QString& wanted);
  QString xChooseCamera(const QString& wanted);

  boost::weak_ptr<Module> fModule;
  QTabWidget* fParent;  // null when the parent is no tab widget
  int fCameraModel = 0;
  QCustomSliders fSliders;
  QComboBox* fResolution = nullptr;
  std::vector<std::pair<QString, QCheckBox*>> fDetections;  // by kind
  // Null while not built.
  QCheckBox* fBlackAndWhite = nullptr;
  QCheckBox* fAutoGain = nullptr;
  QCheckBox* fAutoWhiteBalance = nullptr;
  QCheckBox* fAutoExposition = nullptr;
  QCheckBox* fVerticalFlip = nullptr;
  QCheckBox* fHorizontalFlip = nullptr;
};
