// SPDX-License-Identifier: Apache-2.0
#include "plugins/plugin_catalog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>
#include <algorithm>

#include "language/translations.h"
#include "lookout/widget_interface.h"
#include "zu/log.h"

namespace Lookout {
namespace {

const char* const kUsual = "periscope";

QString pluginName(const QFileInfo& file) {
  QString name = file.completeBaseName();
  return name.startsWith("lib") ? name.mid(3) : name;
}

// Throws the reason as a QString.
QObject* loadRoot(QPluginLoader& loader) {
  // A symbol that is missing must show now, not when it is first called.
  loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
  const QString identifier = loader.metaData().value("IID").toString();
  if (identifier.isEmpty())
    throw QCoreApplication::translate("PluginCatalog", "not a plug-in: %1")
        .arg(loader.errorString());
  // Looked at before the library's code runs for the first time.
  if (identifier != LOOKOUT_WIDGET_INTERFACE_IID)
    throw QCoreApplication::translate("PluginCatalog",
                                      "made for the interface \"%1\", but Lookout offers \"%2\"")
        .arg(identifier, LOOKOUT_WIDGET_INTERFACE_IID);
  QObject* root = loader.instance();
  if (root == nullptr) throw loader.errorString();
  return root;
}

Plugin load(const QFileInfo& file) {
  Plugin plugin{pluginName(file), file.absoluteFilePath(), {}, {}, nullptr, {}};
  try {
    QPluginLoader loader(plugin.file);
    QObject* root = loadRoot(loader);
    plugin.brokerName =
        loader.metaData().value("MetaData").toObject().value("brokerName").toString();
    plugin.interface = qobject_cast<WidgetInterface*>(root);
    if (plugin.interface == nullptr)
      throw QCoreApplication::translate("PluginCatalog", "its object is not a WidgetInterface");
    plugin.root = root;
    const QString beside = translationsFolder(QCoreApplication::applicationDirPath());
    installTranslation(plugin.name, {file.absolutePath(), beside});
    zu::log::info("lookout", "plugins") << "loaded " << plugin.file.toStdString();
  } catch (const QString& why) {
    plugin.error = why;
    zu::log::error("lookout", "plugins")
        << "cannot load " << plugin.file.toStdString() << ": " << why.toStdString();
  }
  return plugin;
}

}  // namespace

PluginCatalog::PluginCatalog(const QString& folder) : fFolder(QDir(folder).absolutePath()) {
  const QDir dir(fFolder, "*.so", QDir::Name, QDir::Files);
  for (const QFileInfo& file : dir.entryInfoList()) fPlugins.push_back(load(file));
  if (const QString why = error(); !why.isEmpty())
    zu::log::error("lookout", "plugins") << why.toStdString();
}

PluginCatalog::~PluginCatalog() {
  // Their brokers must not outlive main().
  for (const Plugin& plugin : fPlugins) delete plugin.root.data();
}

QString PluginCatalog::standardFolder(const QString& bin) {
  const QStringList candidates = {"lib", LOOKOUT_LIBRARY_FOLDER, "lib/" LOOKOUT_MULTIARCH};
  for (const QString& candidate : candidates) {
    const QDir folder(QDir(bin).filePath("../" + candidate + "/lookout/plugins"));
    if (folder.exists()) return folder.absolutePath();
  }
  return QDir::cleanPath(QDir(bin).filePath("../lib/lookout/plugins"));
}

std::vector<const Plugin*> PluginCatalog::loaded() const {
  std::vector<const Plugin*> result;
  for (const Plugin& plugin : fPlugins)
    if (plugin.interface != nullptr) result.push_back(&plugin);
  return result;
}

std::vector<const Plugin*> PluginCatalog::allForRobots() const {
  std::vector<const Plugin*> result = loaded();
  std::erase_if(result,
                [](const Plugin* plugin) { return !plugin->interface->requiresConnection(); });
  return result;
}

const Plugin* PluginCatalog::forRobots() const {
  if (const Plugin* usual = forRobots(kUsual)) return usual;
  const std::vector<const Plugin*> all = allForRobots();
  return all.empty() ? nullptr : all.front();
}

const Plugin* PluginCatalog::forRobots(const QString& name) const {
  for (const Plugin* plugin : allForRobots())
    if (plugin->name == name) return plugin;
  return nullptr;
}

QString PluginCatalog::error() const {
  if (forRobots() != nullptr) return {};
  if (!QFileInfo(fFolder).isDir())
    return QCoreApplication::translate(
               "PluginCatalog", "There is no folder %1 with plug-ins. Name one with --plugins.")
        .arg(fFolder);
  if (fPlugins.empty())
    return QCoreApplication::translate(
               "PluginCatalog", "There is no plug-in in %1. Name another folder with --plugins.")
        .arg(fFolder);
  return QCoreApplication::translate("PluginCatalog",
                                     "No plug-in in %1 shows robots. See Help > Plug-ins for why.")
      .arg(fFolder);
}

}  // namespace Lookout
