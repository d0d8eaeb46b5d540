// Thousands of random days: what the ledger, the archive and the discharge session make of them,
// against the plain versions. The program is ended and started again in between, so everything also
// goes through its files' form.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "random_day.h"
#include "records/archive.h"
#include "records/day_ledger.h"
#include "records/discharge_step.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"
#include "slow_discharge.h"
#include "slow_ledger.h"

namespace embrix {
namespace {

constexpr double kWarm = 10;
constexpr int kBetweenLooks = 5;  // in frames

std::string dayOf(double date) {
  return DayLedger::dayKey(date, [](double seconds) {
    // Days of a quarter of a year's hours, so that midnight comes often.
    const int number = static_cast<int>(seconds / 7200);
    return CivilDate{.year = number / 1000, .month = number / 10 % 100, .day = number % 10};
  });
}

class Machine {
 public:
  explicit Machine(std::uint64_t seed) : day(seed) {}

  RandomDay day;
  Frame frame;
  bool isOnPower = false;
  int percent = 80;

  void next() {
    day.step();
    frame = Frame{};
    frame.date = day.now;
    for (const auto& group : day.groups(50)) {
      AppGroup made;
      made.identity.key = group.key;
      made.identity.name = day.once(5) ? SharedText("renamed") : group.key;
      made.watts = group.watts;
      frame.groups.push_back(std::move(made));
    }
    if (day.once(25)) isOnPower = !isOnPower;
    percent = std::clamp(percent + (day.once(3) ? (isOnPower ? 1 : -1) : 0), 1, 100);
    if (!day.once(20)) frame.battery = battery();
  }

  BatteryReading battery() {
    BatteryReading reading;
    reading.isCharging = isOnPower && day.once(2);
    reading.externalConnected = isOnPower;
    if (!day.once(10)) reading.percent = percent;
    if (!day.once(10)) reading.remainingWh = percent / 2.0;
    if (!day.once(3)) reading.healthPercent = 90 + day.below(3);
    if (!day.once(3)) reading.cycleCount = day.below(500);
    if (!day.once(3)) reading.fullWh = day.between(40, 70);
    return reading;
  }

  double totalWatts() {
    double sum = 0;
    for (const AppGroup& group : frame.groups) sum += group.watts;
    return std::max(sum, day.between(0, 20));
  }
};

TEST(RandomDaysTest, TheLedgerAndTheArchiveAreThoseOfPlainBookkeeping) {
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    Machine machine(seed);
    DayLedger ledger = DayLedger::fresh(dayOf(machine.day.now));
    SlowLedger plain;
    plain.day = ledger.day;
    Archive archive;
    SlowArchive plainArchive;
    std::optional<Frame> previous;
    for (int i = 0; i < 40; ++i) {
      machine.next();
      const double total = machine.totalWatts();
      const std::string day = dayOf(machine.day.now);
      const auto label =
          machine.day.once(3) ? std::nullopt : std::optional("culprit " + std::to_string(i));
      const auto entries = DayLedger::entriesOf(machine.frame.groups);
      DayLedger::Step step{.day = day,
                           .now = machine.frame.date,
                           .elapsed = {},
                           .totalWatts = total,
                           .warmWatts = kWarm,
                           .entries = entries,
                           .label = {}};
      if (previous) step.elapsed = machine.frame.date - previous->date;
      if (label) step.label = SharedText(*label);
      ledger.record(step);
      plain.record(day, machine.frame, previous ? &*previous : nullptr, total, kWarm, label);
      if (i % kBetweenLooks == 0) {
        ASSERT_TRUE(plain.tells(ledger)) << seed << " " << i;
      }
      previous = machine.frame;

      if (machine.day.once(8)) {
        archive.record(ledger, machine.frame.battery);
        plainArchive.record(plain, machine.frame.battery);
      }
      if (machine.day.once(15)) {
        ledger = ledgerOfJson(jsonOf(ledger)).value();
        std::string text;
        for (const std::string_view piece : archive.text()) text += piece;
        archive = archiveOfJson(text).value();
        previous.reset();
      }
    }
    ASSERT_TRUE(plain.tells(ledger)) << seed;
    ASSERT_TRUE(plainArchive.tells(archive)) << seed;
  }
}

TEST(RandomDaysTest, TheDischargeSessionIsThatOfPlainBookkeeping) {
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    Machine machine(seed);
    DischargeState state;
    SlowDischarge plain;
    std::optional<Frame> previous;
    for (int i = 0; i < 40; ++i) {
      machine.next();
      const double total = machine.totalWatts();
      recordDischarge(state, machine.frame, previous ? std::optional(previous->date) : std::nullopt,
                      total);
      plain.record(machine.frame, previous ? &*previous : nullptr, total);
      if (i % kBetweenLooks == 0) {
        ASSERT_TRUE(plain.tells(state.session)) << seed << " " << i;
      }
      ASSERT_EQ(state.wasOnBattery, plain.wasOnBattery) << seed << " " << i;
      ASSERT_EQ(state.pendingWake, plain.pendingWake) << seed << " " << i;
      previous = machine.frame;

      if (machine.day.once(12) && state.session) {  // asleep
        const BatteryReading reading = machine.battery();
        state.session->sleepStart = {.time = machine.day.now,
                                     .percent = reading.percent,
                                     .remainingWh = reading.remainingWh};
        plain.session->mark = {.time = machine.day.now,
                               .percent = reading.percent,
                               .remainingWh = reading.remainingWh};
      }
      if (machine.day.once(10)) {  // awake again, also when it did not sleep
        machine.day.now += machine.day.oneOf({3.0, 600.0, 30'000.0, -50.0});
        state.pendingWake = plain.pendingWake = machine.day.now;
      }
      if (machine.day.once(15)) {  // ended and started again
        if (state.session) state.session = dischargeOfJson(jsonOf(*state.session)).value();
        state.wasOnBattery.reset();
        state.pendingWake.reset();
        plain.wasOnBattery.reset();
        plain.pendingWake.reset();
        previous.reset();
      }
    }
    ASSERT_TRUE(plain.tells(state.session)) << seed;
  }
}

}  // namespace
}  // namespace embrix
