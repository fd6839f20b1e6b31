// SPDX-License-Identifier: Apache-2.0
// The viewer's own module in the robot's runtime, through which every robot call passes.
#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <list>
#include <string>

#include "ky/ahead.h"
#include "ky/module.h"
#include "ky/value.h"
#include "ky/video_device_proxy.h"
#include "viewer/core/gc_interface.h"
#include "viewer/core/model.h"
#include "viewer/core/photo_report.h"

// The robot's folder for photos and films.
inline const std::string kRecordPath = "/home/tam/recordings/cameras/";

// Registers as "Periscope". Every method that reaches the robot catches Ky::KyError itself, writes
// one line to the log under the category "periscope" and its own name, and reports failure as
// told below. Each method is defined in the folder of the subsystem to which it belongs.
//
// Threads: built, destroyed and called on the GUI thread, but for getNext() and
// updateObjectsValue() (camera thread) and subscribeLog() (the runtime's call thread). They meet in
// the model only.
class Module : public Ky::KyModule {
 public:
  // Scratch for the enlarged smallest frame: 160 x 120 pixels of 4 bytes.
  static constexpr int kConvertBufferBytes = 160 * 120 * 4;

  explicit Module(boost::shared_ptr<Ky::KyBroker> broker);
  // Unsubscribes from the camera and from every active extractor and stops a running recording.
  ~Module() override;

  const boost::shared_ptr<Model>& model() const { return fModel; }
  // Not owned; null until the widget exists and after it is gone.
  void setGui(GCInterface* gui) { fGui = gui; }

  // Subscribes to the robot's camera with the model's settings.
  void askForVIM();

  // acquisition/: fetches the newest image into the model and asks for a repaint.
  void getNext();
  // Stepping through stored images is not offered on this side: both do nothing.
  void nextImage();
  void previousImage();

  // detection/: switches the extractor of a kind ("mark", "ball", "duck", "face", "logo",
  // "picture") on (1) or off (0), or asks whether the robot has it (-1). True on success, and for
  // every unknown kind.
  bool activateDetection(const std::string& kind, int action);
  // What asking so for every kind asks the robot.
  static Ky::KyReads presenceReads();
  // Replaces the overlay items of one source by what `value` describes.
  void updateFromValue(const std::string& key, const Ky::KyValue& value);
  // Published: watches a key of the robot's memory. Too long a key, and one too many, are refused
  // with a line in the log, once.
  void subscribeLog(const std::string& strLogName);
  // Reads all watched keys in one call and refreshes their items.
  void updateObjectsValue();

  // settings/: see docs/robot.md for the parameter ids. False on failure.
  bool getCameraParam(int id, int& value) const;
  bool setCameraParam(int id, int value) const;
  // 0 when it can't be had.
  int getCameraModelID() const;
  bool setDefaultParameters();
  bool setCurrentParameters();
  // Named parameters of the ball detector, each an array.
  bool setUraballParam(const std::string& name, Ky::KyValue& value) const;
  bool getUraballParam(const std::string& name, Ky::KyValue& value) const;

  // recording/: takes a photo on the robot.
  void takePicture();
  // What came of the last takePicture().
  const PhotoReport& lastPhoto() const { return fLastPhoto; }
  // Starts or stops a recording on the robot; `recorded` tells that one was stopped and reported.
  // Throws Ky::KyError for a name that is no name.
  void toggleVideoRecord(const std::string& name, int framerate, bool& recorded);
  // Goes on with a film that the viewer before this one had begun when it lost the robot: the robot
  // is asked, where it offers to be, whether `path` is still the film that nobody has stopped. True
  // when it is: then this viewer records it under `name`, as if it had begun it, and the robot
  // knows so where it can.
  bool takeUpFilm(const std::string& name, const std::string& path);

 private:
  const std::string fRobot;  // its address, which the lines in the log are about
  boost::shared_ptr<Model> fModel;
  std::atomic<GCInterface*> fGui{nullptr};
  std::string fSubscriberName;
  boost::shared_ptr<Ky::KyVideoDeviceProxy> fVideoDevice;
  unsigned char* fConvertBuffer = nullptr;
  std::list<std::string> fActiveExtractors;
  std::string fRefusal;  // why the last new key is not watched; the call thread's own
  PhotoReport fLastPhoto;
};
