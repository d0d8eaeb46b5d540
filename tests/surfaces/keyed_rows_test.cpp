#include "surfaces/keyed_rows.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace embrix {
namespace {

using Kind = RowStep::Kind;
using IDs = std::vector<std::string>;

IDs applied(IDs rows, const IDs& after, const std::vector<RowStep>& steps) {
  for (const RowStep& step : steps) {
    const auto at = rows.begin() + static_cast<std::ptrdiff_t>(step.at);
    if (step.kind == Kind::remove) rows.erase(at);
    if (step.kind == Kind::insert) rows.insert(at, after.at(step.at));
    if (step.kind == Kind::move) {
      const std::string row = rows.at(step.from);
      rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(step.from));
      rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(step.at), row);
    }
  }
  return rows;
}

TEST(KeyedRowsTest, EqualListsNeedNoStep) {
  EXPECT_TRUE(stepsBetween({"a", "b"}, {"a", "b"}).empty());
}

TEST(KeyedRowsTest, ARowThatGoesIsTheOnlyStep) {
  EXPECT_EQ(stepsBetween({"a", "b", "c"}, {"a", "c"}),
            (std::vector<RowStep>{{.kind = Kind::remove, .at = 1}}));
}

TEST(KeyedRowsTest, ARowThatComesIsTheOnlyStep) {
  EXPECT_EQ(stepsBetween({"a", "c"}, {"a", "b", "c"}),
            (std::vector<RowStep>{{.kind = Kind::insert, .at = 1}}));
}

TEST(KeyedRowsTest, ARowThatRisesMovesAndIsNotMadeAnew) {
  EXPECT_EQ(stepsBetween({"a", "b", "c"}, {"c", "a", "b"}),
            (std::vector<RowStep>{{.kind = Kind::move, .at = 0, .from = 2}}));
}

TEST(KeyedRowsTest, RowsOfOneIDAreToldApart) {
  const IDs before = {"a", "a", "b"};
  const IDs after = {"a", "b", "a"};
  EXPECT_EQ(applied(before, after, stepsBetween(before, after)), after);
}

RC_GTEST_PROP(KeyedRowsTest, TheStepsLeadFromAnyListToAnyOther, ()) {
  const auto lists = [] {
    return rc::gen::container<IDs>(rc::gen::elementOf(IDs{"a", "b", "c", "d", "e", "f"}));
  };
  const IDs before = *lists();
  const IDs after = *lists();
  const auto steps = stepsBetween(before, after);
  for (const RowStep& step : steps) {
    if (step.kind == Kind::move) RC_ASSERT(step.from > step.at);
  }
  RC_ASSERT(applied(before, after, steps) == after);
}

}  // namespace
}  // namespace embrix
