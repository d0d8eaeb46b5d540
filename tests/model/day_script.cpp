#include "day_script.h"

#include <cmath>
#include <map>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "base/number_text.h"
#include "base/text.h"

namespace embrix {

namespace {

constexpr double kStep = 10;
constexpr double kDay = 86400;

std::string timeOfDay(double date) {
  const int seconds = static_cast<int>(std::fmod(date, kDay));
  return fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

double secondsOfDay(std::string_view time) {
  const auto parts = Text::split(time, ':');
  return leadingDouble(parts.at(0)) * 3600 + leadingDouble(parts.at(1)) * 60 +
         leadingDouble(parts.at(2));
}

template <typename Names>
std::string wattHours(const HashMap<SharedText, double>& groups, const Names& names) {
  std::map<std::string, double> sorted;
  for (const auto& [key, watts] : groups) sorted[names.at(key).string()] = watts;
  std::vector<std::string> parts;
  for (const auto& [name, watts] : sorted) parts.push_back(fmt::format("{} {:.2f}", name, watts));
  return fmt::format("{}", fmt::join(parts, ", "));
}

std::string tell(const DayLedger& ledger) {
  return fmt::format(
      "{}: {:.2f} Wh ({}), hot {:.0f} s, spells {}, longest {:.0f} s, peak {:.1f} W "
      "at {} by {}",
      ledger.day, ledger.totalWattHours, wattHours(ledger.groupWattHours, ledger.groupNames),
      ledger.hotSeconds, ledger.spells, ledger.longestSpellSeconds, ledger.peakWatts,
      ledger.peakTime ? timeOfDay(*ledger.peakTime) : "no time",
      ledger.peakLabel ? ledger.peakLabel->view() : "nobody");
}

std::string tell(const DischargeSession& session) {
  return fmt::format("discharge from {}% at {}: {:.2f} Wh ({}), asleep {:.0f} s {}% {:.2f} Wh{}",
                     session.startPercent.value_or(-1), timeOfDay(session.start),
                     session.totalWattHours, wattHours(session.groupWattHours, session.groupNames),
                     session.asleepSeconds, session.asleepPercent, session.asleepWattHours,
                     session.sleepStart ? ", sleeping" : "");
}

}  // namespace

DayScript::DayScript(Records records) : world(records) {
  world.defaults.set(SettingKeys::kShowWattsInMenuBar, false);  // a frame every ten seconds
  world.start();
}

void DayScript::play(std::string_view script) {
  for (const std::string_view line : Text::split(script, '\n')) playLine(Text::trimmed(line));
}

void DayScript::playLine(std::string_view line) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, blank);
  const std::string_view rest = Text::trimmed(line.substr(blank));
  const auto numbers = Text::split(rest, ' ');
  if (word.empty()) return;
  if (word == "at") {
    clock = std::floor(clock / kDay) * kDay + secondsOfDay(rest);
  } else if (word == "clock") {
    clock += leadingDouble(rest);
  } else if (word == "battery") {
    next_.battery =
        onBattery(static_cast<int>(leadingDouble(numbers.at(0))), leadingDouble(numbers.at(1)));
  } else if (word == "adapter") {
    next_.battery = onAdapter(static_cast<int>(leadingDouble(rest)));
  } else if (word == "draws") {
    draw(rest);
  } else if (word == "heat") {
    next_.thermalState = rest == "serious" ? ThermalState::serious : ThermalState::nominal;
  } else if (word == "alerts") {
    world.alertAt(leadingDouble(numbers.at(0)), leadingDouble(numbers.at(1)));
  } else if (word == "run") {
    run(leadingDouble(rest));
  } else if (word == "sleep") {
    sleep(leadingDouble(rest));
  } else if (word == "restart") {
    world.scheduler.wall = clock;
    world.renew();
    world.start();
  } else {
    throw std::invalid_argument(std::string(line));
  }
}

void DayScript::draw(std::string_view list) {
  next_.groups.clear();
  std::int32_t pid = 100;
  for (const std::string_view each : Text::split(list, ',')) {
    const auto parts = Text::split(Text::trimmed(each), ' ');
    next_.groups.push_back(app(std::string(parts.at(0)), leadingDouble(parts.at(1)), pid++));
  }
}

void DayScript::run(double seconds) {
  for (const double end = clock + seconds; clock < end;) {
    clock += kStep;
    next_.date = clock;
    const std::size_t before = world.notifier.posted.size();
    world.take(next_);
    for (std::size_t i = before; i < world.notifier.posted.size(); ++i) {
      alerts_.push_back(timeOfDay(clock) + " " + world.notifier.posted[i].identifier);
    }
  }
}

void DayScript::sleep(double seconds) {
  world.scheduler.wall = clock;
  world.events.sleep();
  clock += seconds;
  world.scheduler.wall = clock;
  world.events.wake();
}

std::vector<std::string> DayScript::told() const {
  const PowerModel& model = *PowerModel::shared();
  std::vector<std::string> lines = {tell(*model.ledger())};
  for (const DailyRecord& day : model.archive()->days()) {
    lines.push_back(fmt::format("archive {}: {:.2f} Wh", day.day, day.wattHours));
  }
  if (*model.discharge()) lines.push_back(tell(**model.discharge()));
  lines.insert(lines.end(), alerts_.begin(), alerts_.end());
  return lines;
}

}  // namespace embrix
