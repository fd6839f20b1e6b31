// SPDX-License-Identifier: Apache-2.0
#include "run.h"

#include <QApplication>
#include <QDir>
#include <cstdio>

#include "command_line.h"
#include "language/translations.h"
#include "qt_messages.h"
#include "scripted_run.h"
#include "signal_watcher.h"
#include "window/main_window.h"
#include "window/window_icon.h"

namespace Lookout {
namespace {

// Before there is an application with a window, so that help needs no display.
CommandLine parse(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  return parseCommandLine(QCoreApplication::arguments());
}

bool hasDisplay(const CommandLine& options) {
  return options.choosesDisplay || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
         !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// Ends with a slash: plug-ins put file names right behind it.
QString iconFolder(const QString& asked) {
  const QString standard = QCoreApplication::applicationDirPath() + "/../share/lookout/icons";
  return QDir(asked.isEmpty() ? standard : asked).absolutePath() + "/";
}

// Throws CommandLineError when one of them doesn't show robots.
void checkPlugins(const QStringList& asked, const PluginCatalog& catalog) {
  for (const QString& name : asked) {
    if (catalog.forRobots(name) != nullptr) continue;
    QStringList known;
    for (const Plugin* plugin : catalog.allForRobots()) known << plugin->name;
    throw CommandLineError(
        QString("--plugin: no plug-in for robots is called '%1'; in %2 there is: %3\n"
                "Try 'lookout --help'.")
            .arg(name, catalog.folder(), known.isEmpty() ? "none" : known.join(", "))
            .toStdString());
  }
}

int runWindow(const CommandLine& options) {
  const QString standard = PluginCatalog::standardFolder(QCoreApplication::applicationDirPath());
  // What a script sees depends on nothing that was done before.
  const bool isScripted = options.quitAfter || !options.screenshot.isEmpty() || options.report;
  MainWindow window(options.plugins.isEmpty() ? standard : options.plugins,
                    iconFolder(options.resources),
                    isScripted ? MainWindow::Past::Ignored : MainWindow::Past::Remembered);
  checkPlugins(options.robotPlugins, window.catalog());
  ScriptedRun script(window, options);
  const SignalWatcher signalWatcher;
  QObject::connect(&signalWatcher, &SignalWatcher::stopRequested, &window, &QWidget::close);
  // Also ends the loops of dialogs that are still open.
  QObject::connect(&window, &MainWindow::closing, qApp, &QCoreApplication::quit,
                   Qt::QueuedConnection);
  window.show();
  script.start();
  QApplication::exec();
  return script.exitCode();
}

}  // namespace

int run(int argc, char** argv) {
  QCoreApplication::setOrganizationName("Lookout");
  QCoreApplication::setApplicationName("Lookout");
  QCoreApplication::setApplicationVersion(LOOKOUT_VERSION);
  try {
    const CommandLine options = parse(argc, argv);
    if (!options.answer.isEmpty()) {
      std::fputs(options.answer.toUtf8().constData(), stdout);
      return 0;
    }
    if (!hasDisplay(options)) {
      std::fputs(
          "lookout: there is no display. Set QT_QPA_PLATFORM=offscreen to run without one.\n",
          stderr);
      return 1;
    }
    sendQtMessagesToLog();
    const QApplication application(argc, argv);
    installTranslations();
    QGuiApplication::setDesktopFileName("lookout");
    QGuiApplication::setWindowIcon(windowIcon(QCoreApplication::applicationDirPath()));
    return runWindow(options);
  } catch (const CommandLineError& error) {
    std::fprintf(stderr, "lookout: %s\n", error.what());
    return 2;
  }
}

}  // namespace Lookout
