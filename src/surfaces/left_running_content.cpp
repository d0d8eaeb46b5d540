#include "surfaces/left_running_content.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/format.h"
#include "model/left_running.h"

namespace embrix {

namespace {

std::vector<MenuItem> menuOf(const PowerModel& model, const ForgottenRow& row, bool canStop) {
  std::vector<MenuItem> menu;
  if (canStop) menu.push_back({.action = "stop", .label = "Stop"});
  if (model.isCalmed(row.processes)) {
    menu.push_back({.action = "restore", .label = "Restore Full Speed"});
  } else {
    menu.push_back({.action = "calm", .label = "Calm (Efficiency Cores)"});
  }
  menu.push_back({.action = "keep", .label = "Keep Running, Don't List It"});
  if (row.item.root.directory) {
    menu.push_back({.action = "reveal", .label = "Show Folder in Finder"});
  }
  return menu;
}

}  // namespace

EX::Hue LeftRunningRowContent::tileFor(double uptime) {
  const double hours = uptime / 3600;
  if (hours >= 100) return EX::Hue::coralSoft;
  return hours >= 12 ? EX::Hue::yellowSoft : EX::Hue::mintSoft;
}

LeftRunningRowContent LeftRunningRowContent::of(const PowerModel& model, const ForgottenRow& row,
                                                bool isStopping) {
  const ForgottenItem& item = row.item;
  const bool hasProject = item.project && !item.project->empty();
  const bool canStop = item.root.uid == model.uid();
  return {.id = row.id().string(),
          .symbol = item.symbol,
          .tile = tileFor(item.uptime),
          .title = item.title,
          .detail = fmt::format("{} · {}", Format::shortAge(item.uptime),
                                hasProject ? *item.project : "background"),
          .memory = Format::memoryShort(row.memoryBytes()),
          .canStop = canStop,
          .stopHelp = fmt::format("Stop {}", item.title),
          .isStopping = isStopping,
          .menu = menuOf(model, row, canStop)};
}

std::vector<ForgottenRow> LeftRunningContent::heaviestFirst(std::vector<ForgottenRow> rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const ForgottenRow& a, const ForgottenRow& b) {
    return a.memoryBytes() > b.memoryBytes();
  });
  return rows;
}

LeftRunningContent LeftRunningContent::of(const PowerModel& model,
                                          const std::set<std::string>& stopping) {
  const auto rows = heaviestFirst(model.forgottenRows());
  LeftRunningContent content;
  if (rows.empty()) return content;
  for (const ForgottenRow& row : rows) {
    if (content.rows.size() == kShown) break;
    content.rows.push_back(
        LeftRunningRowContent::of(model, row, stopping.contains(row.id().string())));
  }
  if (rows.size() > kShown) content.more = fmt::format("+{} more", rows.size() - kShown);
  content.freeUp = fmt::format("Free up {}", Format::memoryShort(ForgottenRow::memoryBytes(rows)));
  return content;
}

}  // namespace embrix
