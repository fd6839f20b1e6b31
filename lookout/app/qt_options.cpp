// SPDX-License-Identifier: Apache-2.0
#include "qt_options.h"

namespace Lookout {
namespace {

bool isDisplayOption(const QString& argument) {
  return argument == "-platform" || argument == "-display";
}

bool takesValue(const QString& argument) {
  static const QStringList kOptions = {"-platform",      "-platformpluginpath",
                                       "-platformtheme", "-plugin",
                                       "-display",       "-visual",
                                       "-geometry",      "-qwindowgeometry",
                                       "-icon",          "-qwindowicon",
                                       "-title",         "-qwindowtitle",
                                       "-name",          "-session",
                                       "-style",         "-stylesheet"};
  return kOptions.contains(argument);
}

bool isWhole(const QString& argument) {
  static const QStringList kOptions = {"-reverse", "-nograb", "-dograb", "-widgetcount"};
  return kOptions.contains(argument) || argument.startsWith("-style=") ||
         argument.startsWith("-stylesheet=");
}

}  // namespace

QtOptions takeQtOptions(const QStringList& arguments) {
  QtOptions result;
  for (qsizetype i = 0; i < arguments.size(); ++i) {
    const QString& argument = arguments[i];
    if (i == 0 || !(takesValue(argument) || isWhole(argument))) {
      result.others << argument;
      continue;
    }
    if (isDisplayOption(argument)) result.choosesDisplay = true;
    if (takesValue(argument) && ++i == arguments.size()) result.incomplete = argument;
  }
  return result;
}

}  // namespace Lookout
