// SPDX-License-Identifier: Apache-2.0
#include "robot/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <ostream>

#include "robot/robot.h"

namespace robot {
namespace {

constexpr const char* kExamples = R"(
Examples:
  kyrobot
      Two generated scenes, for programs on this computer.
  kyrobot --camera 0=vtest.avi --camera 1=/dev/video0
      A film, over and over, and this computer's camera.
  kyrobot --camera 0=slides/ --port 9560
      A folder of pictures, on another port.
  kyrobot --listen 0.0.0.0 --keys ~/.config/ky/keys
      For other computers whose keys are known; "ky keys" makes them.
  kyrobot --ftp
      With an FTP server for the recordings; it prints the login.

docs/robot.md tells more.)";

std::filesystem::path defaultHome() {
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data != '\0')
    return std::filesystem::path(data) / "kyrobot";
  const char* home = std::getenv("HOME");
  return std::filesystem::path(home != nullptr ? home : ".") / ".local/share/kyrobot";
}

// "INDEX=SOURCE"
std::string checkCamera(const std::string& text) {
  if (text.size() > 2 && (text[0] == '0' || text[0] == '1') && text[1] == '=') return {};
  return "\"" + text + "\" is not INDEX=SOURCE with an INDEX of 0 or 1, such as 0=film.avi";
}

std::string checkModule(const std::string& name) {
  const auto names = moduleNames();
  if (std::find(names.begin(), names.end(), name) != names.end()) return {};
  std::string all;
  for (const std::string& one : names) all += (all.empty() ? "" : ", ") + one;
  return "there is no module \"" + name + "\"; there are " + all;
}

void addFtp(CLI::App& app, bool& isWanted, FtpOptions& ftp) {
  CLI::Option* wanted =
      app.add_flag("--ftp", isWanted,
                   "Serve the home by FTP on the address of --listen, so that recordings can be "
                   "downloaded. The password is that of --ftp-password-file or of the environment "
                   "variable KYROBOT_FTP_PASSWORD, or a new one that is printed");
  app.add_option("--ftp-port", ftp.port, "Port of the FTP server; the viewer knows 21 only")
      ->type_name("PORT")
      ->check(CLI::Range(0, 65535).description(""))
      ->capture_default_str()
      ->needs(wanted);
  app.add_option("--ftp-user", ftp.user, "Name to log in with")
      ->type_name("NAME")
      ->capture_default_str()
      ->needs(wanted);
  app.add_option("--ftp-password-file", ftp.passwordFile, "File whose first line is the password")
      ->type_name("FILE")
      ->needs(wanted);
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out,
                                    std::ostream& err, int& exitCode) {
  Options options;
  options.home = defaultHome();
  std::vector<std::string> cameras, without;
  std::string keys;

  CLI::App app("The robot: its cameras and services, for Lookout and other programs.", "kyrobot");
  app.footer(kExamples);
  app.set_version_flag("--version", std::string("kyrobot ") + KYROBOT_VERSION);
  app.add_option("--port", options.listen.port, "Port to listen on; 0: the system chooses one")
      ->type_name("PORT")
      ->check(CLI::Range(0, 65535).description(""))
      ->capture_default_str();
  app.add_option("--listen", options.listen.host,
                 "Address to listen on. Beyond this computer it needs --keys or --insecure")
      ->type_name("ADDRESS")
      ->capture_default_str();
  app.add_option("--camera", cameras,
                 "What camera 0 or 1 shows: generated (the default), generated:SECONDS (the scene "
                 "of that moment since 1970, standing still), a film, a picture, a folder of "
                 "pictures, or /dev/videoN. The last one given for a camera counts")
      ->type_name("INDEX=SOURCE")
      ->check(CLI::Validator(checkCamera, ""))
      ->allow_extra_args(false);
  app.add_option("--camera-model", options.cameraModel, "Model of the cameras: 1 or 2")
      ->type_name("MODEL")
      ->check(CLI::Range(1, 2).description(""))
      ->capture_default_str();
  app.add_option("--home", options.home, "The robot's home folder, which robots call /home/tam/")
      ->type_name("DIR")
      ->capture_default_str();
  app.add_option("--logos", options.logos,
                 "Folder of the logos that KyLogoDetection knows; by default \"logos\" in the home")
      ->type_name("DIR");
  app.add_option(
         "--pictures", options.pictures,
         "Folder of the pictures that KyVisionRecognition knows; by default \"pictures\" in "
         "the home")
      ->type_name("DIR");
  app.add_option("--keys", keys, "Folder with the robot's own keys and those of known programs")
      ->type_name("DIR");
  app.add_flag("--insecure", options.insecure,
               "Serve anybody who can reach the address, without keys");
  app.add_option("--without", without, "Leave out a module, such as KyMemory")
      ->type_name("NAME")
      ->check(CLI::Validator(checkModule, ""))
      ->allow_extra_args(false);
  app.add_option("--encoder", options.encoder,
                 "libavcodec's name of the encoder for pictures as H.264, which narrow links get")
      ->type_name("NAME")
      ->capture_default_str();
  bool isFtpWanted = false;
  FtpOptions ftp;
  addFtp(app, isFtpWanted, ftp);

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& success) {  // --help, --version
    exitCode = app.exit(success, out, err);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    err << "kyrobot: " << error.what() << "\nTry \"kyrobot --help\".\n";
    exitCode = 2;
    return std::nullopt;
  }
  for (const std::string& camera : cameras)
    options.sources[camera[0] == '0' ? 0 : 1] = camera.substr(2);
  options.without.insert(without.begin(), without.end());
  if (!keys.empty()) options.keys = keys;
  if (isFtpWanted) options.ftp = ftp;
  return options;
}

}  // namespace robot
