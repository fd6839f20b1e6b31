// SPDX-License-Identifier: Apache-2.0
// A screen for benchmarks whose windows have to be real ones.
#pragma once

#include <memory>

#include "support/process.h"

namespace bench {

// While it lives there is an X display for a QApplication that is made after it: the one that
// DISPLAY names, or a virtual one of 1920 x 1080 pixels of its own. Where QT_QPA_PLATFORM asks for
// a platform, that one is used. Throws std::runtime_error when there is neither a display nor Xvfb.
class Screen {
 public:
  Screen();

 private:
  std::unique_ptr<Process> fServer;  // null while none is needed
};

}  // namespace bench
