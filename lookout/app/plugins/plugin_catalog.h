// SPDX-License-Identifier: Apache-2.0
// The plug-ins of a folder.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

class WidgetInterface;

namespace Lookout {

// One file of the folder: a plug-in, or the reason why it isn't one.
struct Plugin {
  QString name;  // the file's name without "lib" and ".so"
  QString file;
  QString error;           // empty when it was loaded
  QPointer<QObject> root;  // null when it was not
  WidgetInterface* interface = nullptr;
  QString brokerName = {};  // of the broker that it asks for, as its metadata says; may be empty
};

// Loads every *.so of a folder, in the order of their names, and each one's texts in the user's
// language, NAME_LANGUAGE.qm, which lie beside it or beside the host's. Nothing that lies there
// stops the host: what can't be used is listed with its reason, and logged. GUI thread.
class PluginCatalog {
 public:
  // A folder that doesn't exist is an error(), not an exception.
  explicit PluginCatalog(const QString& folder);
  // Deletes the plug-ins' objects; their widgets are gone by then.
  ~PluginCatalog();
  PluginCatalog(const PluginCatalog&) = delete;
  PluginCatalog& operator=(const PluginCatalog&) = delete;

  // Where plug-ins lie beside an installed or built program whose folder is `bin`.
  static QString standardFolder(const QString& bin);

  const QString& folder() const { return fFolder; }
  const std::vector<Plugin>& plugins() const { return fPlugins; }
  // Those that were loaded.
  std::vector<const Plugin*> loaded() const;
  // Those of them that show a robot.
  std::vector<const Plugin*> allForRobots() const;
  // Of those the one that is opened unless somebody chooses: Periscope, or the first; null when
  // there is none.
  const Plugin* forRobots() const;
  // Of those the one of this name; null when there is none.
  const Plugin* forRobots(const QString& name) const;
  // Why there is no plug-in for robots; empty when there is one.
  QString error() const;

 private:
  QString fFolder;
  std::vector<Plugin> fPlugins;
};

}  // namespace Lookout
