// SPDX-License-Identifier: Apache-2.0
#include "command_line.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <cmath>

#include "qt_options.h"
#include "robots/picture_choice.h"
#include "robots/robot_address.h"

namespace Lookout {
namespace {

const char* const kExamples = R"(
Qt's own options, such as -style NAME, -platform NAME and -display NAME, are heeded too.

Examples:
  lookout
      Opens the window; connect with Ctrl+N.
  lookout --robot 192.168.1.20
      Connects to a robot on the usual port, 9559.
  lookout --robot 127.0.0.1:9559 --robot 127.0.0.1:9560 --play
      Shows two robots side by side and starts their pictures.
  lookout --robot tam --plugin periscope --plugin my_plugin
      Shows one robot in two ways.
  lookout --robot tam --stage --size 640x480 --fps 30 --detect face --play
      Shows the robot's picture large, with the faces that it finds.
  QT_QPA_PLATFORM=offscreen lookout --robot 127.0.0.1 --play --report \
      --screenshot window.png --quit-after 10
      Runs for ten seconds without a display, saves a picture of the window and says how
      many frames were painted; fails if a robot painted none.
)";

const QCommandLineOption kHelp({"h", "help"}, "Shows this help.");
const QCommandLineOption kVersion({"v", "version"}, "Shows the version.");
const QCommandLineOption kRobot("robot", "Connects to this robot. May be repeated.", "HOST:PORT");
const QCommandLineOption kInsecureRobot("insecure-robot",
                                        "Connects without encryption to this robot, which was "
                                        "started with --insecure. May be repeated.",
                                        "HOST:PORT");
const QCommandLineOption kPlugin("plugin",
                                 "Opens this plug-in for the robots given, such as periscope. May "
                                 "be repeated.",
                                 "NAME");
const QCommandLineOption kPictures("pictures",
                                   "How the pictures of the robots given come: automatic, exact or "
                                   "saving.",
                                   "WORD");
const QCommandLineOption kStage("stage",
                                "Opens the stage of the robots given: their picture, large.");
const QCommandLineOption kSize("size",
                               "Has the pictures of the robots given come in this size: 160x120, "
                               "320x240, 640x480 or 1280x960.",
                               "WxH");
const QCommandLineOption kFps("fps", "Has at most so many of them come a second, from 1 to 30.",
                              "N");
const QCommandLineOption kDetect("detect",
                                 "Switches a detection of the robots given on: ball, duck, face, "
                                 "logo, mark or picture. May be repeated.",
                                 "KIND");
const QCommandLineOption kPlay("play", "Starts the pictures of the robots given.");
const QCommandLineOption kScreenshot("screenshot", "Saves the window as PNG before quitting.",
                                     "FILE");
const QCommandLineOption kQuitAfter("quit-after", "Quits after so many seconds.", "SECONDS");
const QCommandLineOption kPlugins("plugins", "Loads the plug-ins of this folder.", "DIR");
const QCommandLineOption kResources("resources", "Takes the plug-ins' icons from this folder.",
                                    "DIR");
const QCommandLineOption kReport(
    "report",
    "Prints a line about each robot, or each of its plug-ins, when quitting: frames painted, rate, "
    "state, age of the picture, round trip and bandwidth; with --play, the exit code is 1 when a "
    "robot painted nothing.");

[[noreturn]] void refuse(const QString& why) {
  throw CommandLineError((why + "\nTry 'lookout --help'.").toStdString());
}

std::vector<Ky::KyAddress> robots(const QCommandLineParser& parser,
                                  const QCommandLineOption& option) {
  std::vector<Ky::KyAddress> result;
  for (const QString& text : parser.values(option)) try {
      result.push_back(robotAddress(text));
    } catch (const Ky::KyError& error) {
      refuse(QString("--%1: %2").arg(option.names().first(), QString::fromUtf8(error.what())));
    }
  return result;
}

QString pictures(const QCommandLineParser& parser) {
  const QString word = parser.value(kPictures);
  if (parser.isSet(kPictures) && !pictureWords().contains(word))
    refuse(QString("--pictures: '%1' is none of automatic, exact and saving").arg(word));
  return word;
}

constexpr int kMostFps = 30;

// Of an option that is for robots.
void needRobots(const QCommandLineParser& parser, const QCommandLineOption& option,
                const CommandLine& line, const QString& advice) {
  if (parser.isSet(option) && line.robots.empty())
    refuse(QString("--%1: name the robot %2 with --robot").arg(option.names().first(), advice));
}

// One of the words; empty when the option isn't given.
QStringList words(const QCommandLineParser& parser, const QCommandLineOption& option,
                  const QStringList& known) {
  const QStringList given = parser.values(option);
  for (const QString& word : given)
    if (!known.contains(word))
      refuse(QString("--%1: '%2' is none of %3 and %4")
                 .arg(option.names().first(), word, known.mid(0, known.size() - 1).join(", "),
                      known.last()));
  return given;
}

QString framesPerSecond(const QCommandLineParser& parser) {
  const QString text = parser.value(kFps);
  bool isNumber = false;
  const int number = text.toInt(&isNumber);
  if (parser.isSet(kFps) && (!isNumber || number < 1 || number > kMostFps))
    refuse(QString("--fps: '%1' is no whole number from 1 to %2").arg(text).arg(kMostFps));
  return parser.isSet(kFps) ? QString::number(number) : QString();
}

// The rate after the size, which may bound it.
std::vector<std::pair<QString, QString>> choices(const QCommandLineParser& parser) {
  std::vector<std::pair<QString, QString>> result;
  const QStringList sizes = words(parser, kSize, {"160x120", "320x240", "640x480", "1280x960"});
  if (!sizes.isEmpty()) result.emplace_back("size", sizes.last());
  if (const QString rate = framesPerSecond(parser); !rate.isEmpty())
    result.emplace_back("fps", rate);
  QStringList kinds = words(parser, kDetect, {"ball", "duck", "face", "logo", "mark", "picture"});
  kinds.removeDuplicates();
  for (const QString& kind : kinds) result.emplace_back("detect", kind);
  return result;
}

double seconds(const QString& text) {
  bool isNumber = false;
  const double value = text.toDouble(&isNumber);
  if (!isNumber || !std::isfinite(value) || value < 0 || value > 1e6)
    refuse(QString("--quit-after: '%1' is no number of seconds from 0 to 1000000").arg(text));
  return value;
}

QString folder(const QCommandLineParser& parser, const QCommandLineOption& option) {
  const QString path = parser.value(option);
  if (parser.isSet(option) && !QFileInfo(path).isDir())
    refuse(QString("--%1: there is no folder '%2'").arg(option.names().first(), path));
  return path;
}

QString screenshotFile(const QCommandLineParser& parser) {
  if (!parser.isSet(kScreenshot)) return {};
  const QFileInfo file(parser.value(kScreenshot));
  if (parser.value(kScreenshot).isEmpty() || file.isDir())
    refuse(QString("--screenshot: '%1' is no file name").arg(parser.value(kScreenshot)));
  if (!file.absoluteDir().exists())
    refuse(QString("--screenshot: there is no folder '%1'").arg(file.absolutePath()));
  return file.absoluteFilePath();
}

}  // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Lookout shows what robots see.");
  parser.addOptions({kHelp, kVersion, kRobot, kInsecureRobot, kPlugin, kPictures, kStage, kSize,
                     kFps, kDetect, kPlay, kScreenshot, kQuitAfter, kPlugins, kResources, kReport});
  CommandLine result;
  const QtOptions qt = takeQtOptions(arguments);
  if (!qt.incomplete.isEmpty()) refuse(QString("Missing value after '%1'.").arg(qt.incomplete));
  result.choosesDisplay = qt.choosesDisplay;
  if (!parser.parse(qt.others)) refuse(parser.errorText());
  if (parser.isSet(kHelp)) {
    result.answer = parser.helpText() + kExamples;
    return result;
  }
  if (parser.isSet(kVersion)) {
    result.answer = "lookout " LOOKOUT_VERSION "\n";
    return result;
  }
  if (!parser.positionalArguments().isEmpty())
    refuse(QString("'%1' is no option; robots are given with --robot")
               .arg(parser.positionalArguments().first()));
  result.robots = robots(parser, kRobot);
  result.insecureRobots = robots(parser, kInsecureRobot);
  result.robots.insert(result.robots.end(), result.insecureRobots.begin(),
                       result.insecureRobots.end());
  result.robotPlugins = parser.values(kPlugin);
  result.robotPlugins.removeDuplicates();
  needRobots(parser, kPlugin, result, "to open it for");
  result.pictures = pictures(parser);
  needRobots(parser, kPictures, result, "whose pictures they are");
  result.stage = parser.isSet(kStage);
  needRobots(parser, kStage, result, "whose picture it shows");
  result.choices = choices(parser);
  needRobots(parser, kSize, result, "whose pictures they are");
  needRobots(parser, kFps, result, "whose pictures they are");
  needRobots(parser, kDetect, result, "that is to look for it");
  result.play = parser.isSet(kPlay);
  result.report = parser.isSet(kReport);
  result.screenshot = screenshotFile(parser);
  if (parser.isSet(kQuitAfter)) result.quitAfter = seconds(parser.value(kQuitAfter));
  result.plugins = folder(parser, kPlugins);
  result.resources = folder(parser, kResources);
  return result;
}

}  // namespace Lookout
