// How a list that is shown becomes another one by single steps, so that rows which stay can stay
// where they are and the others come, go and move. Plain functions; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace embrix {

struct RowStep {
  enum class Kind {
    remove,  // the row at `at`
    insert,  // the new list's row `at`, before the row that stands there
    move,    // the row at `from` to `at`, a place above `from`
  };

  Kind kind = Kind::insert;
  std::size_t at = 0;
  std::size_t from = 0;  // of a move

  bool operator==(const RowStep&) const = default;
};

// Each step as the list stands after the steps before it. Of several rows with one id all but the
// first of a list are taken for rows of their own that nothing else is like.
std::vector<RowStep> stepsBetween(const std::vector<std::string>& before,
                                  const std::vector<std::string>& after);

}  // namespace embrix
