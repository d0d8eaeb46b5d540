#include "records/day_ledger.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace embrix {

namespace {

double finiteOr0(double number) {
  return std::isfinite(number) ? number : 0;
}

}  // namespace

DayLedger DayLedger::fresh(std::string_view day) {
  DayLedger ledger;
  ledger.day = day;
  return ledger;
}

std::string DayLedger::dayKey(double date, const Calendar& calendar) {
  return embrix::dayKey(calendar(date));
}

std::vector<DayLedger::Entry> DayLedger::entriesOf(std::span<const AppGroup> groups) {
  std::vector<Entry> entries;
  entries.reserve(groups.size());
  for (const AppGroup& group : groups) {
    if (group.watts < kLeastWatts) continue;
    entries.push_back({group.identity.key, group.identity.name, group.watts});
  }
  return entries;
}

void DayLedger::record(const Step& step) {
  if (step.day != day) *this = fresh(step.day);
  if (!step.elapsed) return;
  const double seconds = std::clamp(finiteOr0(*step.elapsed), 0.0, kLongestStep);
  addEnergy(step, seconds);
  if (peakWatts < step.totalWatts && std::isfinite(step.totalWatts)) {
    peakWatts = step.totalWatts;
    peakTime = step.now;
    peakLabel = step.label;
  }
  addHeat(step, seconds);
}

void DayLedger::addEnergy(const Step& step, double seconds) {
  totalWattHours += finiteOr0(step.totalWatts * seconds / 3600);
  for (const Entry& entry : step.entries) {
    if (!std::isfinite(entry.watts)) continue;
    groupWattHours[entry.key] += seconds * entry.watts / 3600;
    groupNames[entry.key] = entry.name;
  }
}

void DayLedger::addHeat(const Step& step, double seconds) {
  if (!(step.totalWatts >= step.warmWatts)) {
    spellSeconds = 0;
    return;
  }
  hotSeconds += seconds;
  const double before = spellSeconds;
  spellSeconds += seconds;
  const bool hasBecomeSpell = before < kShortestSpell && spellSeconds >= kShortestSpell;
  if (hasBecomeSpell && spells < std::numeric_limits<std::int64_t>::max()) ++spells;
  longestSpellSeconds = std::max(longestSpellSeconds, spellSeconds);
}

}  // namespace embrix
