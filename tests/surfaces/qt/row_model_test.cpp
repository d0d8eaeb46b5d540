#include "surfaces/qt/row_model.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace embrix {
namespace {

class RowModelTest : public testing::Test {
 protected:
  void show(const std::vector<std::pair<std::string, int>>& rows) {
    std::vector<RowModel::Row> made;
    for (const auto& [id, value] : rows) made.push_back({id, value});
    model.setRows(std::move(made));
  }
  std::vector<int> values() const {
    std::vector<int> values;
    for (int i = 0; i < model.rowCount(); ++i) {
      values.push_back(model.data(model.index(i), RowModel::kContentRole).toInt());
    }
    return values;
  }

  RowModel model;
};

TEST_F(RowModelTest, ShowsTheRowsInTheirOrder) {
  show({{"a", 1}, {"b", 2}});
  EXPECT_EQ(values(), (std::vector<int>{1, 2}));
  show({{"b", 2}, {"c", 3}, {"a", 1}});
  EXPECT_EQ(values(), (std::vector<int>{2, 3, 1}));
  show({});
  EXPECT_EQ(values(), std::vector<int>{});
}

TEST_F(RowModelTest, ARowThatStaysIsMovedAndNotMadeAnew) {
  show({{"a", 1}, {"b", 2}, {"c", 3}});
  const QPersistentModelIndex c = model.index(2);
  QSignalSpy inserted(&model, &RowModel::rowsInserted);
  QSignalSpy removed(&model, &RowModel::rowsRemoved);
  show({{"c", 3}, {"a", 1}});
  EXPECT_EQ(c.row(), 0);
  EXPECT_EQ(inserted.count(), 0);
  EXPECT_EQ(removed.count(), 1);
}

TEST_F(RowModelTest, OnlyWhatChangedIsTold) {
  show({{"a", 1}, {"b", 2}});
  QSignalSpy changed(&model, &RowModel::dataChanged);
  QSignalSpy counted(&model, &RowModel::countChanged);
  show({{"a", 1}, {"b", 2}});
  EXPECT_EQ(changed.count(), 0);
  show({{"a", 1}, {"b", 7}});
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
  EXPECT_EQ(counted.count(), 0);
}

TEST_F(RowModelTest, ARowBeyondTheListHoldsNothing) {
  show({{"a", 1}});
  EXPECT_FALSE(model.data(model.index(1), RowModel::kContentRole).isValid());
  EXPECT_FALSE(model.data({}, RowModel::kContentRole).isValid());
  EXPECT_FALSE(model.data(model.index(0), Qt::DisplayRole).isValid());
  EXPECT_EQ(model.rowCount(model.index(0)), 0);
}

}  // namespace
}  // namespace embrix
