#include "surfaces/qt/row_model.h"

#include <utility>

#include "surfaces/keyed_rows.h"

namespace embrix {

namespace {

std::vector<std::string> idsOf(const std::vector<RowModel::Row>& rows) {
  std::vector<std::string> ids;
  ids.reserve(rows.size());
  for (const RowModel::Row& row : rows) ids.push_back(row.id);
  return ids;
}

}  // namespace

void RowModel::setRows(std::vector<Row> rows) {
  const auto before = rows_.size();
  for (const RowStep& step : stepsBetween(idsOf(rows_), idsOf(rows))) {
    const int at = static_cast<int>(step.at);
    const auto place = rows_.begin() + at;
    switch (step.kind) {
      case RowStep::Kind::remove:
        beginRemoveRows({}, at, at);
        rows_.erase(place);
        endRemoveRows();
        break;
      case RowStep::Kind::insert:
        beginInsertRows({}, at, at);
        rows_.insert(place, rows[step.at]);
        endInsertRows();
        break;
      case RowStep::Kind::move: {
        const int from = static_cast<int>(step.from);
        beginMoveRows({}, from, from, {}, at);
        Row row = std::move(rows_[step.from]);
        rows_.erase(rows_.begin() + from);
        rows_.insert(rows_.begin() + at, std::move(row));
        endMoveRows();
        break;
      }
    }
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows_[i].content == rows[i].content) continue;
    rows_[i].content = std::move(rows[i].content);
    const QModelIndex changed = index(static_cast<int>(i));
    emit dataChanged(changed, changed);
  }
  if (rows_.size() != before) emit countChanged();
}

int RowModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
  if (role != kContentRole || index.row() < 0 || index.row() >= count()) return {};
  return rows_[static_cast<std::size_t>(index.row())].content;
}

QHash<int, QByteArray> RowModel::roleNames() const {
  return {{kContentRole, "content"}};
}

}  // namespace embrix
