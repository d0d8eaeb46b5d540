#include "hosts/replay/process_table_change.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "base/hash_map.h"

namespace embrix {

namespace {

using Places = HashMap<std::int32_t, std::size_t>;

// Absent when a pid stands there twice.
std::optional<Places> placesByPID(const std::vector<RawProcess>& table) {
  Places places;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (!places.try_emplace(table[i].pid, i).second) return std::nullopt;
  }
  return places;
}

bool equalButForCounters(const RawProcess& a, const RawProcess& b) {
  return a.pid == b.pid && a.ppid == b.ppid && a.uid == b.uid && a.startTime == b.startTime &&
         a.commandName == b.commandName;
}

RecordingProblem problemWith(std::string_view list, std::int32_t pid, std::string_view what) {
  return {fmt::format("processes: {} names pid {}, {}", list, pid, what)};
}

// A table with a mark for the rows that a change removes.
struct Rows {
  std::vector<RawProcess>& table;
  Places places;
  std::vector<bool> isGone = std::vector<bool>(table.size(), false);

  RawProcess* find(std::int32_t pid) {
    const auto place = places.find(pid);
    if (place == places.end() || isGone[place->second]) return nullptr;
    return &table[place->second];
  }
};

std::optional<RecordingProblem> removeAndUpdate(const ProcessTableChange& change, Rows& rows) {
  for (const std::int32_t pid : change.gone) {
    if (rows.find(pid) == nullptr) return problemWith("gone", pid, "which is not in the table");
    rows.isGone[rows.places.at(pid)] = true;
  }
  for (const ChangedCounters& counters : change.changed) {
    RawProcess* process = rows.find(counters.pid);
    if (process == nullptr) {
      return problemWith("changed", counters.pid, "which is not in the table");
    }
    process->usage = counters.usage;
  }
  return std::nullopt;
}

// The rows that stay, in their order, with each added one at its place.
std::optional<RecordingProblem> insert(const ProcessTableChange& change, Rows& rows) {
  std::vector<RawProcess> after;
  const auto isGone =
      static_cast<std::size_t>(std::count(rows.isGone.begin(), rows.isGone.end(), true));
  const std::size_t size = rows.table.size() - isGone + change.added.size();
  after.reserve(size);
  auto added = change.added.begin();
  HashSet<std::int32_t> seen;
  std::size_t next = 0;
  while (after.size() < size) {
    if (added != change.added.end() && added->place == after.size()) {
      const std::int32_t pid = added->process.pid;
      if (rows.find(pid) != nullptr || !seen.insert(pid).second) {
        return problemWith("added", pid, "which is in the table already");
      }
      after.push_back(added->process);
      ++added;
      continue;
    }
    while (next < rows.table.size() && rows.isGone[next]) ++next;
    if (next == rows.table.size()) {
      return problemWith("added", added->process.pid, "at a place outside the table");
    }
    after.push_back(rows.table[next]);
    ++next;
  }
  rows.table = std::move(after);
  return std::nullopt;
}

}  // namespace

ProcessTableChange processTableChange(const std::vector<RawProcess>& before,
                                      const std::vector<RawProcess>& after) {
  const ProcessTableChange whole{.all = after};
  const auto places = placesByPID(before);
  if (before.empty() || !places || !placesByPID(after)) return whole;
  ProcessTableChange change;
  std::vector<bool> stays(before.size(), false);
  std::size_t behindLast = 0;
  for (std::size_t i = 0; i < after.size(); ++i) {
    const auto place = places->find(after[i].pid);
    if (place == places->end() || !equalButForCounters(before[place->second], after[i])) {
      change.added.push_back({i, after[i]});
      continue;
    }
    if (place->second < behindLast) return whole;  // the order of those that stay is another
    behindLast = place->second + 1;
    stays[place->second] = true;
    if (before[place->second].usage != after[i].usage) {
      change.changed.push_back({after[i].pid, after[i].usage});
    }
  }
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (!stays[i]) change.gone.push_back(before[i].pid);
  }
  return change;
}

std::optional<RecordingProblem> applyProcessTableChange(const ProcessTableChange& change,
                                                        std::vector<RawProcess>& table) {
  if (change.all) {
    table = *change.all;
    return std::nullopt;
  }
  auto places = placesByPID(table);
  if (!places) return RecordingProblem{"processes: follows from a table with a pid twice"};
  Rows rows{.table = table, .places = std::move(*places)};
  if (auto problem = removeAndUpdate(change, rows)) return problem;
  return insert(change, rows);
}

}  // namespace embrix
