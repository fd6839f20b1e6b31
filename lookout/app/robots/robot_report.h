// SPDX-License-Identifier: Apache-2.0
// What `lookout --report` prints about a robot.
#pragma once

#include <QString>

namespace Lookout {

class RobotDock;

// "frames painted: 73, fps shown: 4.9, robot: 127.0.0.1:9559, state: live, newest picture: 0.1 s
// ago, round trip: 0.8 ms, bandwidth: 1.5 MB/s", one line, then ", plug-in: periscope" of a robot
// that has several open, and ", problem: WHY" when there is one. For programs to read: new figures
// are added behind those that are there. GUI thread.
QString robotReport(const RobotDock& dock, bool isOneOfSeveral = false);

}  // namespace Lookout
