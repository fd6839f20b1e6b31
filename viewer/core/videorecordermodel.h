// SPDX-License-Identifier: Apache-2.0
// What the viewer knows of the recording that runs on the robot.
#pragma once

#include <string>

// GUI thread only.
struct VideoRecorderModel {
  static inline const std::string kRecordNamePrefix{};
  static constexpr int kRecordFramerateDefault = 15;

  std::string fRecordName;  // as sent to the robot: prefix and the name that the user typed
  std::string fFilePath;    // of the recorded file on the robot
  int fResolution = 1;      // index; 1 is 320 x 240
  int fColorSpace = 13;
  int fFramerate = kRecordFramerateDefault;
  int fFrameCount = 0;  // of the last finished recording
  bool fIsRecording = false;
  std::string fRunningPath;  // of the file that is being recorded, or was last

  // Takes `name` if it is a name: a letter or underscore, then ASCII letters, digits and
  // underscores. Otherwise changes nothing and returns false.
  bool setRecordName(const std::string& name);
};
