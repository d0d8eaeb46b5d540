#include "surfaces/keyed_rows.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string_view>

namespace embrix {

namespace {

// The place of each row of `ids` in `others`; -1 where it has none, or had it before.
std::vector<std::ptrdiff_t> places(const std::vector<std::string>& ids,
                                   const std::vector<std::string>& others) {
  std::vector<std::ptrdiff_t> result;
  result.reserve(ids.size());
  std::set<std::string_view> seen;
  for (const std::string& id : ids) {
    const auto found = std::find(others.begin(), others.end(), id);
    const bool isFirst = seen.insert(id).second;
    result.push_back(isFirst && found != others.end() ? found - others.begin() : -1);
  }
  return result;
}

}  // namespace

std::vector<RowStep> stepsBetween(const std::vector<std::string>& before,
                                  const std::vector<std::string>& after) {
  std::vector<RowStep> steps;

  // What the list holds: places in `after`, in the order in which they stand.
  std::vector<std::ptrdiff_t> standing = places(before, after);
  for (std::size_t i = standing.size(); i-- > 0;) {
    if (standing[i] >= 0) continue;
    steps.push_back({.kind = RowStep::Kind::remove, .at = i});
    standing.erase(standing.begin() + static_cast<std::ptrdiff_t>(i));
  }

  for (std::size_t i = 0; i < after.size(); ++i) {
    const auto place = static_cast<std::ptrdiff_t>(i);
    if (i < standing.size() && standing[i] == place) continue;
    const auto here = standing.begin() + place;
    const auto found = std::find(here, standing.end(), place);
    if (found == standing.end()) {
      steps.push_back({.kind = RowStep::Kind::insert, .at = i});
      standing.insert(here, place);
    } else {
      const auto from = static_cast<std::size_t>(found - standing.begin());
      steps.push_back({.kind = RowStep::Kind::move, .at = i, .from = from});
      standing.erase(found);
      standing.insert(standing.begin() + place, place);
    }
  }
  return steps;
}

}  // namespace embrix
