// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/sources_model.h"

#include <utility>

#include "viewer/stage/overlays/overlay_text.h"

namespace {

constexpr std::int64_t kMillisecond = 1000;

}  // namespace

void SourcesModel::update(const Moment::Shown& shown) {
  std::size_t at = 0;
  for (const Moment::Source& source : shown.sources) put(at++, rowOf(source, shown.behind));
  if (at == fRows.size()) return;
  beginRemoveRows({}, static_cast<int>(at), static_cast<int>(fRows.size()) - 1);
  fRows.resize(at);
  endRemoveRows();
}

// Both are in the order of their keys: rows before this one are in place.
void SourcesModel::put(std::size_t at, Row row) {
  const auto first = [&] { return fRows.begin() + static_cast<std::ptrdiff_t>(at); };
  const int number = static_cast<int>(at);
  while (at < fRows.size() && fRows[at].key < row.key) {
    beginRemoveRows({}, number, number);
    fRows.erase(first());
    endRemoveRows();
  }
  if (at == fRows.size() || fRows[at].key != row.key) {
    beginInsertRows({}, number, number);
    fRows.insert(first(), std::move(row));
    endInsertRows();
    return;
  }
  if (!row.colour.isValid()) row.colour = fRows[at].colour;
  if (row == fRows[at]) return;
  fRows[at] = std::move(row);
  emit dataChanged(index(number), index(number));
}

SourcesModel::Row SourcesModel::rowOf(const Moment::Source& source, std::int64_t behind) {
  const auto& items = source.set->items;
  Row row;
  row.key = source.set->key;
  row.name = tr("%1 (%2)").arg(sourceName(row.key)).arg(items.size());
  row.details = detailsOf(source, behind);
  if (!items.empty()) row.colour = QColor(static_cast<QRgb>(items.front().colour));
  return row;
}

QString SourcesModel::detailsOf(const Moment::Source& source, std::int64_t behind) {
  if (source.isHidden) return tr("hidden");
  if (source.set->items.empty()) return tr("nothing now");
  if (source.isOld) return ageText(source.age);
  if (!source.isOnFrame) return tr("newest");
  if (behind <= 0) return tr("on its frame");
  const std::int64_t tens = (behind / kMillisecond + 5) / 10 * 10;  // the rest only flickers
  return tr("on its frame, %1 ms behind").arg(tens);
}

void SourcesModel::setHidden(std::set<std::string> keys) {
  if (keys == fHidden) return;
  fHidden = std::move(keys);
  if (!fRows.empty()) emit dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
  emit hiddenChanged();
}

int SourcesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(fRows.size());
}

QVariant SourcesModel::data(const QModelIndex& index, int role) const {
  const Row& row = fRows.at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case Qt::DisplayRole:
      return QString(row.name + '\n' + row.details);
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
      return QString(row.name + ", " + row.details);
    case Qt::DecorationRole:
      return row.colour.isValid() ? QVariant(row.colour) : QVariant();
    case Qt::CheckStateRole:
      return fHidden.count(row.key) > 0 ? Qt::Unchecked : Qt::Checked;
    default:
      return {};
  }
}

bool SourcesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !index.isValid()) return false;
  const std::string& key = fRows.at(static_cast<std::size_t>(index.row())).key;
  if (value.toInt() == Qt::Checked)
    fHidden.erase(key);
  else
    fHidden.insert(key);
  emit dataChanged(index, index, {Qt::CheckStateRole});
  emit hiddenChanged();
  return true;
}

Qt::ItemFlags SourcesModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
         Qt::ItemNeverHasChildren;
}
