// A list of rows for a view, each known by its id: told what the rows are now, it inserts, moves,
// removes and changes single rows, so that a view can let them come and go. Main thread only.
#pragma once

#include <string>
#include <vector>

#include <QAbstractListModel>
#include <QVariantMap>

#include "surfaces/qt/content_values.h"

namespace embrix {

class RowModel final : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  struct Row {
    std::string id;
    QVariant content;  // a map, as views read it
  };

  // The one role of every row.
  static constexpr int kContentRole = Qt::UserRole;

  using QAbstractListModel::QAbstractListModel;

  void setRows(std::vector<Row> rows);

  // Of records that have an id.
  template <typename Record>
  void show(const std::vector<Record>& records) {
    std::vector<Row> rows;
    rows.reserve(records.size());
    for (const Record& record : records) rows.push_back({record.id, toVariant(record)});
    setRows(std::move(rows));
  }

  int count() const { return static_cast<int>(rows_.size()); }
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  std::vector<Row> rows_;
};

}  // namespace embrix
