// SPDX-License-Identifier: Apache-2.0
// What the stage says of overlay items.
#pragma once

#include <QString>
#include <cstdint>
#include <string>

// Of a robot's bytes: UTF-8 where they are, else Latin-1, as the small view reads them. One line,
// without characters that aren't seen.
QString textOf(const std::string& bytes);

// Of a key of the robot's memory, for people: "Balls" for the ball detector's.
QString sourceName(const std::string& key);

// "2.3 s ago", of an age in microseconds.
QString ageText(std::int64_t age);
