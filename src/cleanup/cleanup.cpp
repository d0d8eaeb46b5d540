#include "cleanup/cleanup.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "cleanup/cleanup_scan.h"

namespace embrix {

namespace {

std::int64_t bytesOf(const std::vector<CleanupItem>& items) {
  std::int64_t bytes = 0;
  for (const CleanupItem& item : items) bytes += item.bytes;
  return bytes;
}

std::set<std::string> idsOf(const std::vector<CleanupItem>& items) {
  std::set<std::string> ids;
  for (const CleanupItem& item : items) ids.insert(item.id);
  return ids;
}

std::vector<CleanupSpot> without(std::vector<CleanupSpot> spots, const std::set<std::string>& ids) {
  for (CleanupSpot& spot : spots) {
    std::erase_if(spot.items, [&](const CleanupItem& item) { return ids.count(item.id) > 0; });
  }
  return spots;
}

std::string couldNotClear(std::int64_t count) {
  return fmt::format(
      "Couldn't clear {} item{}. Something may be using {}: quit the tool and try again.", count,
      count > 1 ? "s" : "", count > 1 ? "them" : "it");
}

std::string couldNotPutBack(std::int64_t count) {
  return fmt::format("{} item{} no longer in the Trash, or something new is in its place.", count,
                     count > 1 ? "s were" : " was");
}

}  // namespace

Cleanup::Cleanup(const CleanupPorts& ports, std::string home, Scheduler& scheduler)
    : ports_(ports), home_(std::move(home)), scheduler_(scheduler) {}

Cleanup::~Cleanup() {
  if (watch_) watch_->abandon();
}

std::vector<CleanupSpot> Cleanup::found() const {
  std::vector<CleanupSpot> found;
  std::copy_if(spots_->begin(), spots_->end(), std::back_inserter(found),
               [](const CleanupSpot& spot) { return spot.bytes() > 0; });
  return found;
}

std::vector<CleanupItem> Cleanup::unusedItems() const {
  std::vector<CleanupItem> items;
  for (const CleanupSpot& spot : *spots_) {
    auto unused = spot.unused(now());
    std::move(unused.begin(), unused.end(), std::back_inserter(items));
  }
  return items;
}

std::int64_t Cleanup::unusedBytes() const {
  return bytesOf(unusedItems());
}

std::int64_t Cleanup::totalBytes() const {
  std::int64_t bytes = 0;
  for (const CleanupSpot& spot : *spots_) {
    if (spot.kind != CleanupSpot::Kind::review) bytes += spot.bytes();
  }
  return bytes;
}

void Cleanup::scanIfStale() {
  if (*scannedAt_ && now() - **scannedAt_ <= kStaleAge) return;
  scan();
}

void Cleanup::scan() {
  if (*scanning_ || isFixture_) return;
  watch_ = std::make_shared<ScanWatch>();
  clearedDuringScan_.clear();
  // The work holds what it needs by value: it may go on for a moment after the scan was abandoned.
  scanEnd_ = scheduler_.background(
      WorkPriority::utility,
      [ports = ports_, home = home_, now = now(), watch = watch_] {
        return discover(ports, home, now, *watch);
      },
      [this](std::vector<CleanupSpot> spots) { finishScan(std::move(spots)); });
  scanning_ = true;
  lookAtScan();
}

void Cleanup::lookAtScan() {
  nextLook_ = scheduler_.after(kProgressInterval, [this] { lookAtScan(); });
  progress_ = watch_->progress();
}

void Cleanup::endScan() {
  watch_.reset();
  nextLook_.cancel();
  scanEnd_.cancel();
  progress_ = std::nullopt;
  scanning_ = false;
}

void Cleanup::finishScan(std::vector<CleanupSpot> spots) {
  spots_ = without(std::move(spots), clearedDuringScan_);
  scannedAt_ = now();
  endScan();
}

void Cleanup::abandonScan() {
  if (!watch_) return;
  watch_->abandon();
  endScan();
}

void Cleanup::clear(const std::vector<CleanupItem>& items) {
  std::vector<CleanupItem> work;
  std::set<std::string> busy = *clearing_;
  for (const CleanupItem& item : items) {
    if (!item.inUse && busy.insert(item.id).second) work.push_back(item);
  }
  if (work.empty()) return;
  problem_ = std::nullopt;
  if (isFixture_) {
    const auto deleted = std::count_if(work.begin(), work.end(), [](const CleanupItem& item) {
      return item.simulatorUDID.has_value();
    });
    spots_ = without(*spots_, idsOf(work));
    lastCleared_ = Cleared{.bytes = bytesOf(work), .moves = {}, .deleted = deleted};
    return;
  }
  std::erase_if(clearingEnds_, [](const Scheduled& end) { return !end.isPending(); });
  clearingEnds_.push_back(scheduler_.background(
      WorkPriority::userInitiated,
      [work, ports = ports_, home = home_] { return perform(work, ports, home); },
      [this, work](const Performed& performed) { finishClearing(work, performed); }));
  clearing_ = std::move(busy);
}

void Cleanup::finishClearing(const std::vector<CleanupItem>& work, const Performed& performed) {
  if (*scanning_) clearedDuringScan_.insert(performed.cleared.begin(), performed.cleared.end());
  spots_ = without(*spots_, performed.cleared);
  Cleared cleared{.bytes = 0, .moves = performed.moves, .deleted = performed.deleted};
  for (const CleanupItem& item : work) {
    if (performed.cleared.count(item.id) > 0) cleared.bytes += item.bytes;
  }
  lastCleared_ = std::move(cleared);
  if (performed.failed > 0) problem_ = couldNotClear(performed.failed);
  stopClearing(work);
}

void Cleanup::stopClearing(const std::vector<CleanupItem>& work) {
  std::set<std::string> busy = *clearing_;
  for (const CleanupItem& item : work) busy.erase(item.id);
  clearing_ = std::move(busy);
}

void Cleanup::putBack() {
  if (!*lastCleared_) return;
  const std::vector<Cleared::Move> moves = (*lastCleared_)->moves;
  lastCleared_ = std::nullopt;
  if (isFixture_) {
    spots_ = makeFixture_();
    return;
  }
  const auto failed = std::count_if(moves.begin(), moves.end(), [this](const Cleared::Move& move) {
    return !ports_.trash.putBack(move.trashed, move.original, move.identity);
  });
  if (failed > 0) problem_ = couldNotPutBack(failed);
  scannedAt_ = std::nullopt;
  // A scan that runs may have missed what has just come back.
  abandonScan();
  scan();
}

void Cleanup::dismissCleared() {
  lastCleared_ = std::nullopt;
}

void Cleanup::loadFixture(SpotMaker make) {
  abandonScan();
  isFixture_ = true;
  makeFixture_ = std::move(make);
  spots_ = makeFixture_();
  scannedAt_ = now();
}

std::vector<CleanupSpot> Cleanup::discover(const CleanupPorts& ports, const std::string& home,
                                           double now, ScanWatch& watch) {
  return CleanupScan(ports, home, now, watch).spots();
}

}  // namespace embrix
