// SPDX-License-Identifier: Apache-2.0
// Lists the plug-ins and what is wrong with those that were not loaded.
#pragma once

#include <QDialog>

namespace Lookout {

class PluginCatalog;

// GUI thread. Reads the catalog while it is built only.
class PluginsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PluginsDialog(const PluginCatalog& catalog, QWidget* parent = nullptr);
};

}  // namespace Lookout
