// The model against a second, slow and obvious reckoning of what it keeps running sums of, over
// random runs: frames that come unevenly, groups that come and go, settings that change, clocks
// that are set.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>

#include <fmt/format.h>

#include "model/runaway_detector.h"
#include "worlds/model_world.h"

namespace embrix {
namespace {

Frame randomFrame(double date) {
  std::vector<AppGroup> groups;
  const int count = *rc::gen::inRange(0, 6);
  for (int i = 0; i < count; ++i) {
    const int number = *rc::gen::inRange(0, 8);
    const double watts = *rc::gen::inRange(0, 100) / 10.0;
    groups.push_back(app(fmt::format("App{}", number), watts, 100 + i));
  }
  return frameAt(date, std::move(groups));
}

// Mean watts of that group over the last ten minutes; none when no point is in them.
std::optional<double> plainAverage(const History& history, std::string_view key, double now) {
  double sum = 0;
  int count = 0;
  for (const HistoryPoint& point : history.points()) {
    if (point.time < now - 600) continue;
    sum += point.watts(key);
    ++count;
  }
  return count == 0 ? std::nullopt : std::optional(sum / count);
}

std::map<std::string, double> plainAverages(const History& history, const Frame& frame) {
  std::map<std::string, double> averages;
  for (std::size_t i = 0; i < frame.groups.size() && i < 50; ++i) {
    const std::string key = frame.groups[i].identity.key.string();
    if (const auto average = plainAverage(history, key, frame.date)) averages[key] = *average;
  }
  return averages;
}

void expectLikePlain(const PowerModel& model, double alertWatts, double alertMinutes) {
  const Frame& frame = **model.frame();
  const auto plain = plainAverages(*model.history(), frame);
  RC_ASSERT(model.tenMinuteAverages()->size() == plain.size());
  for (const auto& [key, average] : plain) {
    RC_ASSERT(std::abs(model.tenMinuteAverages()->at(std::string_view(key)) - average) < 1e-9);
  }
  RC_ASSERT(*model.runaways() ==
            RunawayDetector::runaways(*model.history(), frame.date, alertWatts, alertMinutes * 60));
}

RC_GTEST_PROP(ModelRandomTest, AveragesAndRunawaysAreThoseOfTheWholeWindow, ()) {
  ModelWorld world(Records::dropped);
  world.start();
  double alertWatts = 3;
  double alertMinutes = 1;
  double date = kMorning;
  const int frames = *rc::gen::inRange(1, 60);
  for (int i = 0; i < frames; ++i) {
    const int event = *rc::gen::inRange(0, 40);
    if (event == 0) date -= *rc::gen::inRange(1, 900);     // the clock is set back
    if (event == 1) date += *rc::gen::inRange(100, 2000);  // or ahead, or it slept
    if (event == 2) alertWatts = *rc::gen::inRange(-1, 8);
    if (event == 3) alertMinutes = *rc::gen::inRange(-1, 30) / 2.0;
    date += *rc::gen::inRange(0, 30);
    world.alertAt(alertWatts, alertMinutes);
    world.take(randomFrame(date));
    expectLikePlain(world.model(), alertWatts, alertMinutes);
  }
}

// The figures that only add up, reckoned anew from all frames.
struct PlainDay {
  double totalWattHours = 0;
  double hotSeconds = 0;
  double peakWatts = 0;
  std::map<std::string, double> groups;

  void add(const Frame& frame, double elapsed, double warm) {
    const double dt = std::min(std::max(elapsed, 0.0), 30.0);
    double total = 0;
    for (const AppGroup& group : frame.groups) total += group.watts;
    totalWattHours += total * dt / 3600;
    peakWatts = std::max(peakWatts, total);
    if (total >= warm) hotSeconds += dt;
    for (const AppGroup& group : frame.groups) {
      if (group.watts >= 0.05) groups[group.identity.key.string()] += group.watts * dt / 3600;
    }
  }
};

RC_GTEST_PROP(ModelRandomTest, ADayAddsUpToItsFrames, ()) {
  ModelWorld world(Records::dropped);
  world.defaults.set(SettingKeys::kAutomaticHeat, false);
  world.defaults.set(SettingKeys::kWarmWatts, 12.0);
  world.start();
  PlainDay plain;
  std::optional<double> previous;
  double date = kMorning;
  const int frames = *rc::gen::inRange(1, 60);
  for (int i = 0; i < frames; ++i) {
    date += *rc::gen::inRange(-5, 60);
    const Frame frame = randomFrame(date);
    world.take(frame);
    if (previous) plain.add(frame, date - *previous, 12);
    previous = date;
  }
  const DayLedger& ledger = *world.model().ledger();
  RC_ASSERT(std::abs(ledger.totalWattHours - plain.totalWattHours) < 1e-9);
  RC_ASSERT(std::abs(ledger.hotSeconds - plain.hotSeconds) < 1e-9);
  RC_ASSERT(std::abs(ledger.peakWatts - plain.peakWatts) < 1e-9);
  RC_ASSERT(ledger.groupWattHours.size() == plain.groups.size());
  for (const auto& [key, wattHours] : plain.groups) {
    RC_ASSERT(std::abs(ledger.groupWattHours.at(std::string_view(key)) - wattHours) < 1e-9);
  }
}

// Auto-Calm by the letter: what is slowed down is what an active rule wants and the user has not
// taken back.
RC_GTEST_PROP(ModelRandomTest, OnlyWhatARuleWantsIsSlowedDown, ()) {
  ModelWorld world(Records::dropped);
  PowerModel& model = world.start();
  double date = kMorning;
  std::set<std::int32_t> restored;
  const int frames = *rc::gen::inRange(1, 40);
  for (int i = 0; i < frames; ++i) {
    Frame frame = frameAt(date += 10);
    std::set<std::int32_t> present;
    for (std::int32_t pid = 1; pid <= 4; ++pid) {
      if (*rc::gen::inRange(0, 3) == 0) continue;
      present.insert(pid);
      frame.groups.push_back(group(fmt::format("k{}", pid), fmt::format("App{}", pid),
                                   {row(pid, "worker", *rc::gen::inRange(0, 12))}));
    }
    frame.battery = *rc::gen::inRange(0, 2) == 0 ? onBattery(80) : onAdapter(80);
    world.bringToLife(frame);
    world.take(frame);
    std::erase_if(restored, [&](std::int32_t pid) { return !present.contains(pid); });

    const int event = *rc::gen::inRange(0, 6);
    const std::int32_t pid = *rc::gen::inRange(1, 5);
    const std::string name = fmt::format("app{}", pid);
    if (event == 0) model.addCalmRule(name, CalmRule::Condition::always);
    if (event == 1) model.addCalmRule(name, CalmRule::Condition::onBattery);
    if (event == 2 && !model.calmRules()->empty()) model.removeCalmRule(model.calmRules()->front());
    if (event == 3 && model.autoCalmed()->contains(pid)) {
      model.restore({row(pid, "worker", 0)});
      restored.insert(pid);
    }

    std::set<std::int32_t> wanted;
    for (const std::int32_t each : present) {
      const auto rule = model.calmRuleForApp(fmt::format("APP{}", each));
      const bool isActive = rule && (rule->condition == CalmRule::Condition::always ||
                                     !frame.battery->externalConnected);
      if (isActive && !restored.contains(each)) wanted.insert(each);
    }
    RC_ASSERT(*model.calmed() == wanted);
    RC_ASSERT(*model.autoCalmed() == wanted);
  }
}

}  // namespace
}  // namespace embrix
