// SPDX-License-Identifier: Apache-2.0
// A labelled slider that is bound to one parameter of the camera.
#pragma once

#include <QWidget>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

class Module;
class QLabel;
class QLayout;
class QSlider;

// Builds its three widgets, a name, a value and a slider in a row, for another widget that owns
// them; it is a widget itself for its slot only and never shown. The panel keeps it for as long as
// the three live. GUI thread.
class QCustomSlider : public QWidget {
  Q_OBJECT

 public:
  // Builds no widgets yet. `activation` tells whether they will be enabled and moves be written;
  // `writeThrough` whether a move writes the parameter to the robot at all.
  QCustomSlider(QWidget* parent, boost::shared_ptr<Module> module, std::string name,
                int parameterId, bool activation, int minimum, int maximum, bool writeThrough);

  // Builds the row, with the parameter's value as the robot tells it. A value out of range is
  // shown as the minimum; a parameter that can't be read is greyed out. Null when the module is
  // gone.
  QLayout* init();

  // These return false when the widgets are not built.
  bool initSlider(int minimum, int maximum);
  bool initLabel(int width);
  bool initValueLabel(std::string text, int width);
  // Kept also when the widgets are not built.
  bool setActivation(bool on);
  // The pixels that the labels need in the font of now, for the name and for any value of the
  // range; no less than they have at first. Once built.
  int neededNameWidth() const;
  int neededValueWidth() const;
  void setLabelWidths(int name, int value);
  // Moves the slider, which writes the value if the slider is active and writes through.
  bool setValue(int value);

  std::string getName() const { return fName; }
  // Null before init().
  QSlider* slider() const { return fSlider; }

 public slots:
  void onChanged(int value);

 private:
  QLabel* newLabel(const QString& text, int width);

  boost::weak_ptr<Module> fModule;
  QWidget* fParent;
  bool fWriteThrough;
  QLabel* fNameLabel = nullptr;
  QLabel* fValueLabel = nullptr;
  QSlider* fSlider = nullptr;
  std::string fName;
  int fParameterId;
  bool fActivation;
  int fMinimum;
  int fMaximum;
};

using QCustomSliders = std::vector<std::unique_ptr<QCustomSlider>>;

// The first slider of this name, or null.
QCustomSlider* findSlider(const QCustomSliders& sliders, const std::string& name);
