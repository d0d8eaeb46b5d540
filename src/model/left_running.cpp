#include "model/left_running.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

namespace embrix {

namespace {

using RowsByID = std::unordered_map<std::string_view, const ProcessRow*>;

RowsByID rowsByID(const Frame& frame) {
  RowsByID rows;
  for (const AppGroup& group : frame.groups) {
    for (const ProcessRow& row : group.processes) rows.insert_or_assign(row.id.view(), &row);
  }
  return rows;
}

ForgottenRow rowOf(const ForgottenItem& item, const RowsByID& rows, const LeftRunning::Gain& gain) {
  ForgottenRow row;
  row.item = item;
  for (const ProcessFacts& member : item.members) {
    const auto present = rows.find(member.id);
    if (present == rows.end()) continue;
    row.processes.push_back(*present->second);
    row.watts += present->second->watts;
  }
  row.minutes = gain(row.watts);
  return row;
}

}  // namespace

std::string LeftRunning::keptKey(const ForgottenItem& item) {
  return fmt::format("{}|{}", item.title, item.project.value_or(std::string()));
}

std::vector<ForgottenRow> LeftRunning::rows(const Frame& frame, const std::set<std::string>& kept,
                                            const Gain& gain) {
  if (frame.forgotten.empty()) return {};
  const RowsByID present = rowsByID(frame);
  std::vector<ForgottenRow> rows;
  for (const ForgottenItem& item : frame.forgotten) {
    if (kept.contains(keptKey(item))) continue;
    // The scan that found it can be older than the frame.
    if (!present.contains(item.root.id)) continue;
    rows.push_back(rowOf(item, present, gain));
  }
  std::stable_sort(rows.begin(), rows.end(), [](const ForgottenRow& a, const ForgottenRow& b) {
    return a.watts != b.watts ? a.watts > b.watts : a.item.uptime > b.item.uptime;
  });
  return rows;
}

}  // namespace embrix
