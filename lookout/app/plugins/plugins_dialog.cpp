// SPDX-License-Identifier: Apache-2.0
#include "plugins/plugins_dialog.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include "plugins/plugin_catalog.h"

namespace Lookout {
namespace {

QTableWidgetItem* cell(const QString& text) {
  auto* item = new QTableWidgetItem(text);
  item->setToolTip(text);
  return item;
}

QTableWidget* buildTable(const PluginCatalog& catalog, QWidget* parent) {
  auto* table = new QTableWidget(static_cast<int>(catalog.plugins().size()), 3, parent);
  table->setHorizontalHeaderLabels(
      {PluginsDialog::tr("Plug-in"), PluginsDialog::tr("File"), PluginsDialog::tr("State")});
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  int row = 0;
  for (const Plugin& plugin : catalog.plugins()) {
    table->setItem(row, 0, cell(plugin.name));
    table->setItem(row, 1, cell(QFileInfo(plugin.file).fileName()));
    table->setItem(row, 2,
                   cell(plugin.error.isEmpty() ? PluginsDialog::tr("loaded") : plugin.error));
    ++row;
  }
  table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
  table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  return table;
}

}  // namespace

PluginsDialog::PluginsDialog(const PluginCatalog& catalog, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Plug-ins"));
  resize(860, 320);
  auto* folder = new QLabel(tr("Folder: %1").arg(catalog.folder()), this);
  folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
  folder->setTextFormat(Qt::PlainText);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(folder);
  layout->addWidget(buildTable(catalog, this));
  if (catalog.plugins().empty()) {
    auto* error = new QLabel(catalog.error(), this);
    error->setTextFormat(Qt::PlainText);
    error->setWordWrap(true);
    layout->addWidget(error);
  }
  layout->addWidget(buttons);
}

}  // namespace Lookout
