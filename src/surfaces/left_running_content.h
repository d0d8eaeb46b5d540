// The popover's card of what was left running: the heaviest rows, and what freeing all would give.
// A pure reading of the model. Main thread only, as the model is.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "model/power_model.h"
#include "surfaces/menu_item.h"
#include "surfaces/palette.h"

namespace embrix {

struct LeftRunningRowContent {
  std::string id;
  std::string symbol;
  EX::Hue tile = EX::Hue::mintSoft;
  std::string title;
  std::string detail;
  std::string memory;
  bool canStop = false;
  std::string stopHelp;
  bool isStopping = false;
  std::vector<MenuItem> menu;

  static LeftRunningRowContent of(const PowerModel& model, const ForgottenRow& row,
                                  bool isStopping);

  // By how long it has been up, in seconds.
  static EX::Hue tileFor(double uptime);

  static constexpr auto fields() {
    using Row = LeftRunningRowContent;
    return std::tuple{field("id", &Row::id),
                      field("symbol", &Row::symbol),
                      field("tile", &Row::tile),
                      field("title", &Row::title),
                      field("detail", &Row::detail),
                      field("memory", &Row::memory),
                      field("canStop", &Row::canStop),
                      field("stopHelp", &Row::stopHelp),
                      field("isStopping", &Row::isStopping),
                      field("menu", &Row::menu)};
  }
  bool operator==(const LeftRunningRowContent&) const = default;
};

struct LeftRunningContent {
  static constexpr std::size_t kShown = 3;

  std::vector<LeftRunningRowContent> rows;  // those that are shown
  std::optional<std::string> more;          // about those that are not; absent when there are none
  std::optional<std::string> freeUp;        // the button; absent without rows

  // `stopping` holds the ids of rows that the user has stopped.
  static LeftRunningContent of(const PowerModel& model, const std::set<std::string>& stopping);

  // The order of this card: most memory first.
  static std::vector<ForgottenRow> heaviestFirst(std::vector<ForgottenRow> rows);

  // The list of rows is shown by itself.
  static constexpr auto fields() {
    return std::tuple{field("more", &LeftRunningContent::more),
                      field("freeUp", &LeftRunningContent::freeUp)};
  }
  bool operator==(const LeftRunningContent&) const = default;
};

}  // namespace embrix
