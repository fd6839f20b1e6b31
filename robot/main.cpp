// SPDX-License-Identifier: Apache-2.0
#include <malloc.h>

#include <iostream>
#include <opencv2/core.hpp>
#include <opencv2/core/utils/logger.hpp>

#include "robot/command_line.h"
#include "robot/robot.h"
#include "robot/start_ftp.h"
#include "robot/stop_signals.h"

namespace {

// Pictures come and go by the megabyte. Given back to the system, their memory would have to be
// fetched again page by page for the next one, which takes longer than most of what is done to
// them.
void keepMemoryOfPictures() {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 128 << 20);
}

int serve(const robot::Options& options) {
  const robot::StopSignals stop;
  // A robot's cameras have threads enough of their own, and we say ourselves what went wrong.
  cv::setNumThreads(1);
  cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
  {
    const robot::Robot robot(options);
    const auto ftp = robot::startFtp(options, std::cout);
    std::cout << "kyrobot: listening on " << robot.address().toString() << std::endl;
    stop.wait();
  }
  std::cout << "kyrobot: stopped" << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  keepMemoryOfPictures();
  int exitCode = 0;
  const auto options = robot::parseOptions(argc, argv, std::cout, std::cerr, exitCode);
  if (!options) return exitCode;
  try {
    return serve(*options);
  } catch (const std::exception& error) {
    std::cerr << "kyrobot: " << error.what() << std::endl;
    return 1;
  }
}
