// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>
#include <chrono>
#include <iomanip>
#include <limits>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/pictures/camera.h"
#include "cli/pictures/film.h"
#include "cli/pictures/output_file.h"
#include "cli/pictures/picture_feed.h"
#include "cli/stop_signals.h"

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;

// How long a signal may wait.
constexpr std::chrono::milliseconds kStep{100};
// As long as a call: whoever waits longer for the first picture gets none.
constexpr std::chrono::milliseconds kPatience{3000};
// What had come before the end belongs to the film; where it comes quicker than it is encoded, that
// has no end.
constexpr int kMostLeft = 30;
constexpr double kLongest = 1e6;  // seconds

struct Options {
  RobotOptions robot;
  CameraOptions camera{.pictures = "automatic"};
  std::string file;
  double seconds = kLongest;
};

[[noreturn]] void refuse(const std::string& why) {
  throw Ky::KyError(kBrokerName, "", why);
}

// Takes the first picture, or says why there is none.
void begin(Film& film, PictureFeed& feed, StopSignals& stop) {
  const auto end = Clock::now() + kPatience;
  while (film.pictures() == 0) {
    if (const auto fed = feed.next(kStep)) return film.add(*fed);
    if (!feed.problem().empty()) refuse("there is no picture: " + feed.problem());
    if (stop.wasTold()) refuse("stopped before there was a picture");
    if (Clock::now() > end)
      refuse("no picture came within " + std::to_string(kPatience.count()) + " ms");
  }
}

void goOn(Film& film, PictureFeed& feed, StopSignals& stop, double seconds) {
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  for (int left = kMostLeft; left > 0;) {
    const bool isOver = stop.wasTold() || Clock::now() >= end;
    const auto fed = feed.next(isOver ? std::chrono::milliseconds(0) : kStep);
    if (fed) film.add(*fed);
    if (isOver) left = fed ? left - 1 : 0;
  }
}

void report(const Film& film, const Options& options, std::ostream& out) {
  const double seconds = static_cast<double>(film.duration()) / 1000;
  if (options.robot.json)
    out << toJson(Ky::KyValue::array(
               {options.file, film.width(), film.height(), film.pictures(), seconds}))
        << "\n";
  else
    out << options.file << ": " << film.width() << " x " << film.height() << ", " << film.pictures()
        << (film.pictures() == 1 ? " picture, " : " pictures, ") << std::fixed
        << std::setprecision(1) << seconds << " s\n";
}

void watch(const Options& options, std::ostream& out) {
  requireFilmName(options.file);
  requireWritable(options.file);
  StopSignals stop;
  const RobotConnection robot(options.robot);
  CameraSubscription camera(robot, options.camera);
  const auto feed = openFeed(robot, camera, options.camera);
  Film film(options.file, options.camera.fps);
  begin(film, *feed, stop);
  goOn(film, *feed, stop, options.seconds);
  film.finish();
  report(film, options, out);
  if (!feed->problem().empty()) refuse("the film ends early: " + feed->problem());
  if (robot->connection() != Ky::KyConnection::Connected)
    refuse("the film ends early: there is no sign of life from the robot");
}

}  // namespace

void addWatchCommand(CLI::App& app, std::ostream& out) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      addRobotCommand(app, "watch", "Film what the robot sees, on this computer", options->robot);
  command.callback([options, &out] { watch(*options, out); });
  command.add_option("FILE", options->file, "Where to, FILE.mkv")->required();
  command.add_option("--seconds", options->seconds, "How long; until Ctrl-C without it")
      ->type_name("N")
      ->check(CLI::Range(0.1, kLongest).description(""));
  addCameraOptions(command, options->camera);
  command.add_option("--fps", options->camera.fps, "Pictures a second, 1 to 30")
      ->type_name("N")
      ->check(CLI::Range(1, 30).description(""))
      ->capture_default_str();
  command.footer(
      "\nPictures that come compressed are put into the film as they are; exact ones are "
      "compressed\nhere, with hardly a loss.");
}

}  // namespace cli
