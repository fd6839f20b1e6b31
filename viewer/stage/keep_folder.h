// SPDX-License-Identifier: Apache-2.0
// Where the stage keeps pictures and films on this computer, and what they are called.
#pragma once

#include <QString>

// GUI thread.

// What was chosen with setKeepFolder(), whether it is there or not; else "Lookout" among the user's
// pictures, which is made where it is missing.
QString keepFolder();
// Remembered in the application's settings.
void setKeepFolder(const QString& folder);

// What a robot's name or address becomes in the name of a file: nothing that a file system takes
// for something else, and no more than leaves room for a date.
QString safeName(const QString& name);
// "kitchen 2026-11-22 15-04-05": the robot, and now.
QString keptName(const QString& robot);

// The path of a file that isn't there yet: "BASE.mkv", or else "BASE (2).mkv" and so on. `ending`:
// with its point.
QString freeFileName(const QString& folder, const QString& base, const QString& ending);
