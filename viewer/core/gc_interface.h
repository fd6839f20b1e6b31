// SPDX-License-Identifier: Apache-2.0
// What the viewer's module asks of the viewer's widget.
#pragma once

class GCInterface {
 public:
  virtual ~GCInterface() = default;

  // Thread-safe: asks for a repaint.
  virtual void updateImage() = 0;
  // GUI thread only: shows the recorder's state.
  virtual void updateVideoRecorderView() = 0;
  // GUI thread only: brings a tab to the front.
  virtual void selectVideoRecorderView() = 0;
  virtual void selectVideoSettingView() = 0;
};
