// SPDX-License-Identifier: Apache-2.0
// The panel of the recorder: the film's name and what became of it.
#pragma once

#include <QWidget>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

class Module;
class QLabel;
class QLineEdit;

// 400 x 600 pixels. GUI thread.
class VideoRecorderSettingsWidget : public QWidget {
  Q_OBJECT

 public:
  VideoRecorderSettingsWidget(boost::shared_ptr<Module> module, QWidget* parent);

  // Always 0: the panel offers no choice.
  float getFramerate() const;
  // As typed, not checked; what ASCII can't say makes it a name that the recorder refuses.
  std::string getRecordName() const;
  // As if it had been typed.
  void setRecordName(const QString& name);
  // A running film can't be renamed.
  void xWidgetsSetEnabled(bool enabled);
  // Shows the state of the recorder's model; does nothing without one.
  void updateFields();

 private:
  boost::weak_ptr<Module> fModule;
  QLineEdit* fNameEdit;
  QLabel* fNameLabel;
  QLabel* fStatusLabel;
};
