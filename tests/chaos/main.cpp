// SPDX-License-Identifier: Apache-2.0
// Puts a viewer and a robot through random faults. scripts/chaos runs it.
#include <QApplication>
#include <fstream>
#include <iostream>

#include "campaign.h"
#include "options.h"
#include "qt_messages.h"
#include "results.h"
#include "zu/log.h"

namespace {

int join(const std::vector<std::string>& files) {
  Results results;
  for (const std::string& file : files) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error("there is no file " + file);
    read(in, results);
  }
  printTable(std::cout, results);
  return results.broken == 0 ? 0 : 1;
}

int runCampaign(const Options& options) {
  const Results results = Campaign(options, std::cout).run();
  if (!options.results.empty()) {
    std::ofstream out(options.results);
    write(out, results);
    if (!out.flush()) throw std::runtime_error("can't write to " + options.results);
  }
  printTable(std::cout, results);
  return results.broken == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  zu::log::setConsoleLevel(zu::log::Level::silent);
  Lookout::sendQtMessagesToLog();
  const QApplication application(argc, argv);
  QCoreApplication::setApplicationName("chaos");
  try {
    const Options options = parseOptions(QCoreApplication::arguments());
    if (!options.answer.empty()) {
      std::cout << options.answer;
      return 0;
    }
    return options.join.empty() ? runCampaign(options) : join(options.join);
  } catch (const OptionsError& error) {
    std::cerr << "chaos: " << error.what() << std::endl;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "chaos: " << error.what() << std::endl;
    return 1;
  }
}
