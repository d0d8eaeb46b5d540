// The story of the last sleep out of a power log of the greatest length that is read: 4,000,000
// characters. Bytes per second; where the log comes from is not in it.

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include <fmt/format.h>

#include "host/power_log_source.h"
#include "records/overnight_log.h"
#include "records/power_log.h"

namespace embrix {
namespace {

std::string row(int second, std::string_view kind, std::string_view detail) {
  return fmt::format("2026-03-{:02} {:02}:{:02}:{:02} +0100 {:<20}\t{}\n", 1 + second / 86400 % 28,
                     second / 3600 % 24, second / 60 % 60, second % 60, kind, detail);
}

// A quarter of an hour of a sleeping machine, as chatty as machines are: three rows in four tell of
// assertions.
std::string quarter(int second) {
  std::string rows;
  for (int i = 0; i < 12; ++i) {
    rows +=
        row(second + i, "Assertions",
            "PID 445(mDNSResponder) Created MaintenanceWake \"mDNSResponder:maintenance\" "
            "00:00:00  id:0x0xd000081c4 [System: PrevIdle PushSrvc SRPrevSleep kCPU]          ");
  }
  rows += row(second + 12, "Sleep",
              "Entering Sleep state due to 'Maintenance Sleep':TCPKeepAlive=active Using Batt "
              "(Charge:76%) 872 secs  ");
  rows += row(second + 13, "Wake Requests",
              "[*process=dasd request=SleepService deltaSecs=960 wakeAt=2026-03-02 07:16:07 "
              "info=\"com.apple.dasd:501:com.apple.duetexpertd.everydayshortcuts\"] "
              "[process=mDNSResponder request=Maintenance deltaSecs=7198 info=\"upkeep wake\"]");
  rows += row(second + 14, "Kernel Client Acks",
              "Delays to Wake notifications: [Codec Output driver is slow(77 ms)]           ");
  rows += row(second + 870, "DarkWake",
              "DarkWake from Deep Idle [CDNP] : due to SMC.OutboxNotEmpty smc.70070000 wifibt/ "
              "Using BATT (Charge:76%) 7 secs    ");
  return rows;
}

// One night after the other; or, with `oneNight`, all rows between the same two wakes.
std::string log(bool oneNight) {
  std::string text = row(0, "Wake", "Wake from Deep Idle");
  int second = 900;
  for (; text.size() < PowerLog::kLongestLog; second += 900) {
    text += quarter(second);
    if (!oneNight && second % 86400 == 0) text += row(second + 880, "Wake", "Wake from Deep Idle");
  }
  text.resize(text.rfind('\n', PowerLog::kLongestLog - 100) + 1);
  return text + row(second + 86400, "Wake", "Wake from Deep Idle Using BATT (Charge:60%)");
}

void parseOvernight(benchmark::State& state, bool oneNight) {
  const std::string text = log(oneNight);
  for (auto _ : state) benchmark::DoNotOptimize(OvernightLog::parse(text));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK_CAPTURE(parseOvernight, nights, false);
BENCHMARK_CAPTURE(parseOvernight, one_night, true);

struct Log final : PowerLogSource {
  std::string read() override { return text; }
  std::string text = log(false);
};

// Repair and cut, a copy of the log included.
void readPowerLog(benchmark::State& state) {
  Log source;
  for (auto _ : state) benchmark::DoNotOptimize(PowerLog::read(source));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * source.text.size()));
}
BENCHMARK(readPowerLog);

}  // namespace
}  // namespace embrix
