// The one place that knows the records' folder: JSON files that are replaced whole. A plain value
// without any state but the folder's name, so it may be used on any thread with copies of the
// records.
//
// Saving makes the folder where it is missing, writes beside the file, flushes, renames: whoever
// reads, and whoever starts after a crash, finds the old file or the new one whole. False when the
// file could not be replaced; the old one then stands.
//
// Loading gives nothing at all for a file that is missing, cannot be read or is not what it should
// be in every part; keys that nobody knows are passed over. A file that is there and gives nothing
// is set aside under an ending of its own, in place of what was set aside before, so that the next
// save does not write over it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/user_facts.h"
#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_session.h"
#include "records/history_point.h"
#include "records/history_snapshot.h"
#include "records/power_baseline.h"

namespace embrix {

struct HistoryStore {
  static constexpr std::string_view kFolder = "Embrix";
  static constexpr std::string_view kDamagedEnding = ".damaged";

  std::string directory;  // absolute; empty where nothing is kept: all saves and loads then fail

  // The folder "Embrix" among what the user's programs keep for themselves.
  static HistoryStore standard(const UserFacts& user);

  // Each file stands for itself: one that cannot be replaced keeps none of the others from it. A
  // session that is absent leaves its file as it is.
  bool saveAll(const HistorySnapshot& points, const DayLedger& ledger, const Archive& archive,
               const std::optional<DischargeSession>& discharge,
               const PowerBaseline& baseline) const;

  bool save(const HistorySnapshot& points) const;
  bool saveLedger(const DayLedger& ledger) const;
  bool saveArchive(const Archive& archive) const;
  bool saveDischarge(const DischargeSession& session) const;
  bool saveBaseline(const PowerBaseline& baseline) const;

  // The points that are newer than that (seconds since 1970), in the order of the file.
  std::vector<HistoryPoint> load(double newerThan) const;
  std::optional<DayLedger> loadLedger() const;
  std::optional<Archive> loadArchive() const;
  std::optional<DischargeSession> loadDischarge() const;
  std::optional<PowerBaseline> loadBaseline() const;

  // Clears away what a killed run left half written beside the files. Once, before the first save.
  void removeLeftovers() const;

  bool operator==(const HistoryStore&) const = default;
};

}  // namespace embrix
