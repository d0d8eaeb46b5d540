// The developer cleanup: what was found, what is going on, and the operations on it. Everything
// goes to the Trash, simulators aside, so that the last clearing can be put back. Main thread only;
// slow work goes to the scheduler's background and comes back as a value.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/observed.h"
#include "base/scheduler.h"
#include "cleanup/cleanup_ports.h"
#include "cleanup/cleanup_spot.h"
#include "cleanup/scan_watch.h"

namespace embrix {

class Cleanup {
 public:
  // The outcome of the last clearing.
  struct Cleared {
    struct Move {
      std::string original;
      std::string trashed;
      FileIdentity identity;

      bool operator==(const Move&) const = default;
    };
    std::int64_t bytes = 0;    // of the cleared items together
    std::vector<Move> moves;   // what went to the Trash and where it is now
    std::int64_t deleted = 0;  // simulators deleted for good; these can't be put back

    bool operator==(const Cleared&) const = default;
  };

  // What came of a list of items.
  struct Performed {
    std::set<std::string> cleared;  // ids
    std::vector<Cleared::Move> moves;
    std::int64_t deleted = 0;
    std::int64_t failed = 0;

    bool operator==(const Performed&) const = default;
  };

  using SpotMaker = std::function<std::vector<CleanupSpot>()>;

  static constexpr double kStaleAge = 600;           // seconds that a scan stays good
  static constexpr double kProgressInterval = 0.25;  // seconds between two looks at a scan

  // `home` is the user's home folder, absolute.
  Cleanup(const CleanupPorts& ports, std::string home, Scheduler& scheduler);
  Cleanup(const Cleanup&) = delete;
  Cleanup& operator=(const Cleanup&) = delete;
  ~Cleanup();

  // Of the last scan, in the catalogue's order, less what was cleared since.
  const Observed<std::vector<CleanupSpot>>& spots() const { return spots_; }
  const Observed<bool>& scanning() const { return scanning_; }
  // When the last scan ended, seconds since 1970; absent before one, and when its findings no
  // longer hold.
  const Observed<std::optional<double>>& scannedAt() const { return scannedAt_; }
  // Of the scan that runs, absent without one. Told every kProgressInterval.
  const Observed<std::optional<ScanProgress>>& progress() const { return progress_; }
  const Observed<std::set<std::string>>& clearing() const { return clearing_; }  // ids
  const Observed<std::optional<Cleared>>& lastCleared() const { return lastCleared_; }
  // The last failure in words.
  const Observed<std::optional<std::string>>& problem() const { return problem_; }
  bool isFixture() const { return isFixture_; }

  // Spots that hold anything.
  std::vector<CleanupSpot> found() const;
  std::vector<CleanupItem> unusedItems() const;
  std::int64_t unusedBytes() const;
  std::int64_t totalBytes() const;  // what is only for review aside

  // Scans unless the last scan ended no more than kStaleAge ago.
  void scanIfStale();
  // Nothing while a scan runs, and with demo data.
  void scan();
  // Ends the scan that runs, if any, at once: what was found before stands.
  void abandonScan();

  // Starts to clear the items, those aside that are in use or being cleared.
  void clear(const std::vector<CleanupItem>& items);
  // Undoes the last clearing, as far as that can be, and scans anew.
  void putBack();
  // The user has seen the outcome of the last clearing; it can no longer be put back from here.
  void dismissCleared();

  // From now on the spots are what `make` says and the disk is left alone. Called again when a
  // clearing is put back.
  void loadFixture(SpotMaker make);

  // Looks at the disk. Blocks; any thread. `now` in seconds since 1970. Whatever was found so far
  // when the watch is abandoned.
  static std::vector<CleanupSpot> discover(const CleanupPorts& ports, const std::string& home,
                                           double now, ScanWatch& watch);

  // Clears the items one after the other, whatever becomes of each. Blocks; any thread. An item
  // without a path counts for nothing, one that has gone by itself as cleared.
  static Performed perform(const std::vector<CleanupItem>& items, const CleanupPorts& ports,
                           const std::string& home);

 private:
  double now() const { return scheduler_.wallTime(); }
  void lookAtScan();
  void endScan();
  void finishScan(std::vector<CleanupSpot> spots);
  void finishClearing(const std::vector<CleanupItem>& work, const Performed& performed);
  void stopClearing(const std::vector<CleanupItem>& work);

  CleanupPorts ports_;
  std::string home_;
  Scheduler& scheduler_;
  SpotMaker makeFixture_;
  bool isFixture_ = false;

  Observed<std::vector<CleanupSpot>> spots_;
  Observed<bool> scanning_;
  Observed<std::optional<double>> scannedAt_;
  Observed<std::optional<ScanProgress>> progress_;
  Observed<std::set<std::string>> clearing_;
  Observed<std::optional<Cleared>> lastCleared_;
  Observed<std::optional<std::string>> problem_;

  std::shared_ptr<ScanWatch> watch_;         // of the scan that runs
  std::set<std::string> clearedDuringScan_;  // ids, which the scan may have seen before
  Scheduled scanEnd_;
  Scheduled nextLook_;
  std::vector<Scheduled> clearingEnds_;
};

}  // namespace embrix
