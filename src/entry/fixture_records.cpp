// The demo data's past: the last hour, the day, the weeks before.

#include <cmath>
#include <numbers>
#include <utility>

#include "entry/fixture.h"
#include "model/setting_keys.h"
#include "records/calendar_day.h"

namespace embrix {

namespace {

constexpr double kDay = 86400;

// A slow wave with a quicker one on it, 0 to 1 over time.
double wave(double time, double period, double shift) {
  constexpr double kTurn = 2 * std::numbers::pi;
  const double slow = std::sin(kTurn * time / period + shift);
  const double quick = std::sin(kTurn * time / (period / 7) + 2 * shift);
  return 0.5 + 0.36 * slow + 0.14 * quick;
}

std::string dayBefore(double now, int days) {
  return dayKey(localDate(now - days * kDay));
}

}  // namespace

HashMap<SharedText, double> Fixture::tenMinuteAverages() {
  return {{"tool:node", 9.6},     {"app:safari", 5.8}, {"tool:emulator", 3.0}, {"app:music", 0.8},
          {"tool:orbstack", 0.7}, {"tool:dev", 0.6},   {"app:mail", 0.3}};
}

History Fixture::history(double now) {
  constexpr double kSpan = 3 * 3600;
  constexpr double kStep = 12;
  History history(PowerModel::kHistoryPoints);
  for (double age = kSpan; age >= 0; age -= kStep) {
    const double time = now - age;
    const double node = 4 + 9 * wave(age, 5400, 1.2);
    const double safari = 3 + 5 * wave(age, 3800, 0.4);
    const double mail = 0.1 + 0.6 * wave(age, 2100, 2.6);
    HistoryPoint point;
    point.time = time;
    point.systemWatts = node + safari + mail + 11.5;
    point.groupWatts =
        SharedMap<double>({{"tool:node", node}, {"app:safari", safari}, {"app:mail", mail}});
    point.temperature = 52 + 1.3 * node;
    point.cpuPercent = 20 * (node + safari);
    point.label = SharedText(node > safari ? "node" : "Safari");
    history.append(std::move(point));
  }
  return history;
}

DischargeSession Fixture::discharge(double now) {
  DischargeSession session = DischargeSession::begun(now - 3.4 * 3600, 98);
  session.lastTime = now;
  session.totalWattHours = 17.1;
  session.groupWattHours = {{"tool:node", 6.2},
                            {"app:safari", 3.9},
                            {"tool:emulator", 2.1},
                            {"app:music", 0.7},
                            {"app:mail", 0.4}};
  session.groupNames = {{"tool:node", "node"},
                        {"app:safari", "Safari"},
                        {"tool:emulator", "Android emulator"},
                        {"app:music", "Music"},
                        {"app:mail", "Mail"}};
  session.asleepSeconds = 2460;
  session.asleepPercent = 1;
  session.asleepWattHours = 0.6;
  return session;
}

Archive Fixture::archive(double now) {
  constexpr int kDays = 28;
  std::vector<DailyRecord> days;
  for (int before = kDays; before >= 1; --before) {
    // A working week is heavier than its end.
    const bool isWeekend = before % 7 == 2 || before % 7 == 3;
    const double total = (isWeekend ? 34 : 96) + 22 * wave(before, 9, 0.7);
    DailyRecord day;
    day.day = dayBefore(now, before);
    day.wattHours = total;
    day.appWattHours = SharedMap<double>({{"tool:node", total * (isWeekend ? 0.08 : 0.31)},
                                          {"app:safari", total * 0.22},
                                          {"tool:emulator", total * 0.12},
                                          {"app:music", total * 0.05},
                                          {"app:mail", total * 0.03}});
    day.appNames = SharedMap<SharedText>({{"tool:node", "node"},
                                          {"app:safari", "Safari"},
                                          {"tool:emulator", "Android emulator"},
                                          {"app:music", "Music"},
                                          {"app:mail", "Mail"}});
    day.health = before > 15 ? 95 : 94;
    day.cycles = 212 - before / 2;
    day.fullWh = 70.2 + 0.02 * before;
    days.push_back(std::move(day));
  }
  return Archive(std::move(days));
}

DayLedger Fixture::ledger(double now) {
  DayLedger ledger = DayLedger::fresh(dayBefore(now, 0));
  ledger.totalWattHours = 74.8;
  ledger.groupWattHours = {{"tool:node", 24.6},    {"app:safari", 17.3}, {"tool:emulator", 9.8},
                           {"tool:orbstack", 4.1}, {"app:music", 3.2},   {"tool:dev", 1.9},
                           {"app:mail", 1.6}};
  ledger.groupNames = {{"tool:node", "node"},
                       {"app:safari", "Safari"},
                       {"tool:emulator", "Android emulator"},
                       {"tool:orbstack", "OrbStack Helper"},
                       {"app:music", "Music"},
                       {"tool:dev", "Developer tools"},
                       {"app:mail", "Mail"}};
  ledger.hotSeconds = 4140;
  ledger.spells = 5;
  ledger.longestSpellSeconds = 1380;
  ledger.peakWatts = 46.2;
  ledger.peakTime = now - 5200;
  ledger.peakLabel = SharedText("node");
  ledger.spellSeconds = 340;
  return ledger;
}

Overnight Fixture::overnight(double now) {
  return {.sleptAt = now - 16.5 * 3600,
          .wokeAt = now - 8.8 * 3600,
          .darkWakes = 9,
          .awakeSeconds = 388,
          .chargeAtSleep = 91,
          .chargeAtWake = 84,
          .onPower = false,
          .causes = {{"Scheduled maintenance", 6}, {"Network", 3}},
          .requesters = {{"mDNSResponder", 4}, {"Mail", 2}}};
}

void Fixture::load(PowerModel& model, double now) {
  Settings& defaults = model.defaults();
  defaults.set(SettingKeys::kAutomaticHeat, false);
  defaults.set(SettingKeys::kWarmWatts, kWarmWatts);
  defaults.set(SettingKeys::kHotWatts, kHotWatts);
  model.cleanup().loadFixture([now] { return cleanup(now); });
  model.showFixture({.frame = frame(now, model.uid()),
                     .history = history(now),
                     .discharge = discharge(now),
                     .archive = archive(now),
                     .overnight = overnight(now),
                     .ledger = ledger(now),
                     .tenMinuteAverages = tenMinuteAverages()});
}

}  // namespace embrix
