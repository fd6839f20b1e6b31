// SPDX-License-Identifier: Apache-2.0
// What was asked for on the command line.
#pragma once

#include <QStringList>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "ky/address.h"

namespace Lookout {

struct CommandLine {
  std::vector<Ky::KyAddress> robots;
  std::vector<Ky::KyAddress> insecureRobots;  // those of them that are reached without encryption
  QStringList robotPlugins;                   // what to open for each of them; empty: what is usual
  QString pictures;                           // how theirs come; empty: as before
  // What their widgets are told to choose, in this order; see LookoutWidget::choose().
  std::vector<std::pair<QString, QString>> choices;
  bool stage = false;  // a view of this kind is opened for each of them
  bool play = false;
  bool report = false;
  QString screenshot;               // empty: none
  std::optional<double> quitAfter;  // seconds
  QString plugins;                  // empty: the standard folder
  QString resources;                // empty: the standard folder
  bool choosesDisplay = false;      // by one of Qt's options
  // Instead of running: print this and leave.
  QString answer;
};

// what() says what is wrong and how to learn more.
class CommandLineError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

// `arguments` begins with the program's name; Qt's own options among them are left to it. Needs a
// QCoreApplication, not a display. Throws CommandLineError.
CommandLine parseCommandLine(const QStringList& arguments);

}  // namespace Lookout
