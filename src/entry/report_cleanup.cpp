#include "entry/report_cleanup.h"

#include <fmt/format.h>

#include "base/format.h"
#include "base/text.h"

namespace embrix {

namespace {

// Whether or not the spot is one to be cleared: this is what a person is told, not what is cleared.
bool looksUnused(const CleanupItem& item, double now) {
  if (item.inUse) return false;
  if (item.obsolete) return true;
  return item.lastUsed && !item.dateIsAdded && now - *item.lastUsed >= CleanupSpot::kUnusedAge;
}

std::string age(const CleanupItem& item, double now) {
  if (!item.lastUsed) return "age unknown";
  return Format::lastUsed(now - *item.lastUsed, item.dateIsAdded);
}

std::string lineOf(const CleanupItem& item, double now) {
  std::string line = fmt::format(
      "    {:8.8} {} · {} · {}", Format::disk(item.bytes), Text::escapeForTerminal(item.title),
      Text::escapeForTerminal(item.detail.value_or("-")), age(item, now));
  if (item.inUse) line += " · IN USE: " + Text::escapeForTerminal(*item.inUse);
  if (item.obsolete) line += " · OBSOLETE: " + Text::escapeForTerminal(*item.obsolete);
  if (looksUnused(item, now)) line += " · UNUSED";
  return line + "\n";
}

}  // namespace

std::string reportCleanup(const std::vector<CleanupSpot>& spots, double now) {
  std::string report;
  for (const CleanupSpot& spot : spots) {
    if (spot.items.empty()) continue;
    report += fmt::format("{} · {}\n", spot.title, Format::disk(spot.bytes()));
    for (const CleanupItem& item : spot.items) report += lineOf(item, now);
  }
  return report;
}

}  // namespace embrix
