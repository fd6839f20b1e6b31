// SPDX-License-Identifier: Apache-2.0
// The window "Lookout" with a viewer that plays, and a user who has changed its settings.
#pragma once

#include <memory>
#include <string>

#include "ky/broker.h"
#include "lookout/settings_of_test.h"
#include "robots/robot_session.h"
#include "support/modal_driver.h"
#include "window/main_window.h"
#include "worker.h"

// GUI thread.
class Desktop {
 public:
  // Shows the robot and begins to play. Throws std::runtime_error when no picture comes.
  explicit Desktop(const Ky::KyAddress& robot);

  // As a user does who has had enough: closes the robot's dock and connects anew. Throws as above.
  void connectAgain();

  // Chooses resolution, frame rate and a detection.
  void chooseSettings();
  // The user does something, in vain or not, that leaves those as they are: moves a slider of the
  // camera, or takes a photo.
  void moveSlider();
  void takePhoto();
  // What is not as it was chosen, in the panel and on the robot; empty when all is.
  std::string wrongSettings();

  // The viewer's peer on the robot calls a module; the event loop runs meanwhile. Throws KyError.
  Ky::KyValue call(const std::string& module, const std::string& method,
                   const Ky::KyValue::Array& arguments = {});

  // Of all widgets since it connected.
  quint64 framesPainted() const;
  // Titles of dialogs that came up; each was closed at once.
  const QStringList& dialogs() const { return fDialogs.seen(); }

 private:
  template <class Kind>
  Kind* find(const QString& name) const;
  void dock();
  std::string wrongPanel() const;
  std::string wrongRobot();

  const Ky::KyAddress fRobot;
  const SettingsOfTest fSettings;
  Worker fWorker;
  ModalDriver fDialogs;
  std::unique_ptr<Lookout::MainWindow> fWindow;
  Lookout::RobotSession* fSession = nullptr;
};
