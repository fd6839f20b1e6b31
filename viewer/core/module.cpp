// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/module.h"

#include <algorithm>
#include <boost/make_shared.hpp>

#include "ky/video_recorder_proxy.h"
#include "ky/vision_toolbox_proxy.h"
#include "viewer/core/videorecordermodel.h"
#include "zu/log.h"

namespace {

constexpr const char* kSubscribeLogDescription =
    "asks lookout to display objects from KyMemory. \n"
    " The object shall be an array of arrays of 9 values :"
    " [ float x [0,1] , float y [0,1] , int diameter , int thickness, int shape,"
    " int red, int green, int blue , string description ].\n"
    " for instance : [[0.5,0.7,20,2,0,0,0,0, \"this is a test\"]] ,"
    " list of shapes available : 0: circle, 1: cross, 2: square";

zu::log::Stream logError(const char* function) {
  return zu::log::error("periscope", function);
}

void stopWithToolbox(const boost::shared_ptr<Ky::KyBroker>& broker) {
  boost::shared_ptr<Ky::KyVisionToolboxProxy> toolbox;
  try {
    toolbox = boost::make_shared<Ky::KyVisionToolboxProxy>(broker);
  } catch (const Ky::KyError& error) {
    logError("~Module") << "Error while getting proxy on KyVisionToolbox: " << error.what();
    return;
  }
  try {
    toolbox->stopVideoRecord();
  } catch (const Ky::KyError& error) {
    logError("~Module") << "Unable to stop video record: " << error.what();
  }
}

void stopRecording(const boost::shared_ptr<Ky::KyBroker>& broker) {
  boost::shared_ptr<Ky::KyVideoRecorderProxy> recorder;
  try {
    recorder = boost::make_shared<Ky::KyVideoRecorderProxy>(broker);
  } catch (const Ky::KyError& error) {
    zu::log::warning("periscope", "~Module")
        << "Error while getting proxy on KyVideoRecorder: " << error.what();
    zu::log::warning("periscope", "~Module") << "Trying to use KyVisionToolbox instead...";
    stopWithToolbox(broker);
    return;
  }
  try {
    recorder->stopRecording();
  } catch (const Ky::KyError& error) {
    logError("~Module") << "Unable to stop video record: " << error.what();
  }
}

}  // namespace

Module::Module(boost::shared_ptr<Ky::KyBroker> broker)
    : KyModule(broker, "Periscope"),
      fRobot(broker->address().toString()),
      fModel(boost::make_shared<Model>()) {
  const zu::log::Subject robot(fRobot);
  setModuleDescription("This module belongs to the Periscope of Lookout.");
  functionName("subscribeLog", getName(), kSubscribeLogDescription);
  addParam("strLogName", "name in KyMemory");
  bindMethod(&Module::subscribeLog);
  fConvertBuffer = new unsigned char[kConvertBufferBytes];
  // The conversion never writes the outermost columns: the grey of a frame that has yet to come.
  std::fill_n(fConvertBuffer, kConvertBufferBytes, static_cast<unsigned char>(150));
  try {
    fVideoDevice = boost::make_shared<Ky::KyVideoDeviceProxy>(getParentBroker());
  } catch (const Ky::KyError& error) {
    logError("Module") << "Error while getting proxy on KyVideoDevice: " << error.what();
    fModel->setPictureProblem(error.what());  // nothing will be fetched
  }
}

Module::~Module() {
  const zu::log::Subject robot(fRobot);
  delete[] fConvertBuffer;
  if (fVideoDevice) {
    try {
      fVideoDevice->unsubscribe(fSubscriberName);
    } catch (const Ky::KyError& error) {
      logError("~Module") << "Fail to unsubscribe from KyVideoDevice: " << error.what();
    }
  }
  for (const std::string& extractor : fActiveExtractors) {
    try {
      getParentBroker()->getProxy(extractor, 0)->callVoid("unsubscribe", getName());
    } catch (const Ky::KyError& error) {
      logError("~Module") << error.what();
    }
  }
  fActiveExtractors.clear();
  if (fModel->fVideoRecorder && fModel->fVideoRecorder->fIsRecording)
    stopRecording(getParentBroker());
}

void Module::askForVIM() {
  if (!fVideoDevice) return;
  const zu::log::Subject robot(fRobot);
  try {
    fSubscriberName = fVideoDevice->subscribe(fSubscriberName, fModel->fResolution,
                                              fModel->fColorSpace, fModel->fFps);
  } catch (const Ky::KyError& error) {
    logError("askForVIM") << "Error while getting proxy on KyVideoDevice: " << error.what();
  }
}
