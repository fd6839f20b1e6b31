// SPDX-License-Identifier: Apache-2.0
// The rows of the list of sources.
#pragma once

#include <QAbstractListModel>
#include <QColor>
#include <set>
#include <string>
#include <vector>

#include "viewer/stage/overlays/moment.h"

// A row a source, in the order of their keys, that can be ticked off. GUI thread.
class SourcesModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  // Changes what is different, so that what is selected stays so.
  void update(const Moment::Shown& shown);

  const std::set<std::string>& hidden() const { return fHidden; }
  void setHidden(std::set<std::string> keys);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  void hiddenChanged();

 private:
  struct Row {
    std::string key;
    QString name;     // with how many there are
    QString details;  // never empty
    QColor colour;    // of its items; invalid while it has had none

    bool operator==(const Row&) const = default;
  };

  static Row rowOf(const Moment::Source& source, std::int64_t behind);
  static QString detailsOf(const Moment::Source& source, std::int64_t behind);
  void put(std::size_t at, Row row);

  std::vector<Row> fRows;
  std::set<std::string> fHidden;  // also keys that are not there now
};
