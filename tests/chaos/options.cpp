// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <QCommandLineParser>

#include "fault.h"

namespace {

const QCommandLineOption kHelp({"h", "help"}, "Shows this help.");
const QCommandLineOption kSeed("seed",
                               "Which faults, from 0 on (1). The same number, the same faults.",
                               "N");
const QCommandLineOption kFaults("faults", "How many faults (20).", "N");
const QCommandLineOption kMinutes("minutes", "Ends after so many minutes.", "N");
const QCommandLineOption kLongest("longest", "The longest fault, in milliseconds (5000).", "N");
const QCommandLineOption kPatience(
    "patience", "Multiplies every limit of time, in percent (100): for slow machines.", "N");
const QCommandLineOption kOnly("only", "Only this fault. May be repeated.", "FAULT");
const QCommandLineOption kFilm("film",
                               "Has a film recorded all the time, not only in some rounds.");
const QCommandLineOption kVerbose("v", "Prints a line for every fault.");
const QCommandLineOption kResults("results", "Writes the results to a file.", "FILE");
const QCommandLineOption kJoin("join",
                               "Does nothing but print the table of such a file. May be repeated.",
                               "FILE");

[[noreturn]] void refuse(const QString& why) {
  throw OptionsError((why + "\nTry '--help'.").toStdString());
}

int number(const QCommandLineParser& parser, const QCommandLineOption& option, int lowest,
           int otherwise) {
  if (!parser.isSet(option)) return otherwise;
  bool isNumber = false;
  const int value = parser.value(option).toInt(&isNumber);
  if (!isNumber || value < lowest)
    refuse(QString("--%1: '%2' is no whole number from %3 on")
               .arg(option.names().first(), parser.value(option))
               .arg(lowest));
  return value;
}

QString faultNames() {
  QStringList names;
  for (const Fault& fault : allFaults()) names << fault.name;
  return names.join(", ");
}

std::vector<const Fault*> faults(const QStringList& names) {
  std::vector<const Fault*> result;
  for (const QString& name : names) {
    result.push_back(findFault(name.toStdString()));
    if (result.back() == nullptr)
      refuse(QString("--only: there is no fault '%1'; there are: %2").arg(name, faultNames()));
  }
  return result;
}

std::vector<std::string> texts(const QStringList& list) {
  std::vector<std::string> result;
  for (const QString& text : list) result.push_back(text.toStdString());
  return result;
}

}  // namespace

Options parseOptions(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Puts a viewer and a robot through random faults, and says what became of it.\nFaults: " +
      faultNames());
  parser.addOptions({kHelp, kSeed, kFaults, kMinutes, kLongest, kPatience, kOnly, kFilm, kVerbose,
                     kResults, kJoin});
  if (!parser.parse(arguments)) refuse(parser.errorText());
  if (!parser.positionalArguments().isEmpty())
    refuse(QString("'%1' is no option").arg(parser.positionalArguments().first()));
  Options options;
  if (parser.isSet(kHelp)) options.answer = parser.helpText().toStdString();
  options.seed = static_cast<std::uint32_t>(number(parser, kSeed, 0, 1));
  options.faults = number(parser, kFaults, 1, options.faults);
  options.most = std::chrono::minutes(number(parser, kMinutes, 1, 0));
  options.longest = std::chrono::milliseconds(number(parser, kLongest, 100, 5000));
  options.patience = number(parser, kPatience, 1, 100) / 100.0;
  options.only = faults(parser.values(kOnly));
  options.film = parser.isSet(kFilm);
  options.verbose = parser.isSet(kVerbose);
  options.results = parser.value(kResults).toStdString();
  options.join = texts(parser.values(kJoin));
  return options;
}
