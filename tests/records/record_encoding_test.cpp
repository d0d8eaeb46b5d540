#include "records/record_encoding.h"

#include <limits>

#include <gtest/gtest.h>

#include "records/json_writer.h"
#include "sample_records.h"

namespace embrix {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string jsonOf(const HistoryPoint& point) {
  std::string text;
  appendJson(text, point);
  return text;
}

TEST(RecordEncodingTest, EveryFieldIsWrittenUnderItsName) {
  EXPECT_EQ(jsonOf(fullPoint()), R"({"time":1750000000.125,"systemWatts":12.5,)"
                                 R"("groupWatts":{"com.example.browser":4.75,"named:Vite":0.05},)"
                                 R"("temperature":61.5,"cpuPercent":182.25,"label":"Browser"})");
  EXPECT_EQ(embrix::jsonOf(fullDay()),
            R"({"day":"2026-03-01","wattHours":250.75,)"
            R"("appWattHours":{"com.example.browser":99.5,"named:Vite":1e-09},)"
            R"("appNames":{"com.example.browser":"Browser","named:Vite":"Vite"},)"
            R"("health":91,"cycles":312,"fullWh":68.5})");
  DischargeSession session = fullSession();
  session.groupWattHours.clear();
  session.groupNames.clear();
  EXPECT_EQ(embrix::jsonOf(session),
            R"({"start":1750000000,"startPercent":98,"lastTime":1750003600.5,)"
            R"("totalWattHours":12.25,"groupWattHours":{},"groupNames":{},)"
            R"("asleepSeconds":28800,"asleepPercent":4,"asleepWattHours":2.5,)"
            R"("sleepStart":{"time":1750003600.5,"percent":71,"remainingWh":48.125}})");
  DayLedger ledger = fullLedger();
  ledger.groupWattHours.clear();
  ledger.groupNames.clear();
  EXPECT_EQ(embrix::jsonOf(ledger),
            R"({"day":"2026-03-02","totalWattHours":101.5,"groupWattHours":{},"groupNames":{},)"
            R"("hotSeconds":754.5,"spells":3,"longestSpellSeconds":322.125,"peakWatts":41.75,)"
            R"("peakTime":1750000000.5,"peakLabel":"Zoë's build ☕","spellSeconds":12})");
  EXPECT_EQ(embrix::jsonOf(PowerBaseline({9.4F, 12}, 1'750'000'000.75)),
            R"({"samples":[9.4,12],"lastAdded":1750000000.75})");
}

TEST(RecordEncodingTest, WhatIsAbsentIsLeftOut) {
  EXPECT_EQ(jsonOf(barePoint()), R"({"time":1750000002,"groupWatts":{},"cpuPercent":0})");
  EXPECT_EQ(embrix::jsonOf(bareDay()),
            R"({"day":"2026-03-02","wattHours":0,"appWattHours":{},"appNames":{}})");
  EXPECT_EQ(embrix::jsonOf(bareSession()),
            R"({"start":1750000000,"lastTime":1750000000,"totalWattHours":0,"groupWattHours":{},)"
            R"("groupNames":{},"asleepSeconds":0,"asleepPercent":0,"asleepWattHours":0})");
  EXPECT_EQ(embrix::jsonOf(DayLedger::fresh("2026-03-02")),
            R"({"day":"2026-03-02","totalWattHours":0,"groupWattHours":{},"groupNames":{},)"
            R"("hotSeconds":0,"spells":0,"longestSpellSeconds":0,"peakWatts":0,"spellSeconds":0})");
  EXPECT_EQ(embrix::jsonOf(PowerBaseline()), R"({"samples":[],"lastAdded":0})");
}

TEST(RecordEncodingTest, NumbersThatJsonHasNotAreLeftOutWhereThatIsPossible) {
  HistoryPoint point = barePoint();
  point.time = -kInfinity;
  point.cpuPercent = kNaN;
  point.systemWatts = kInfinity;
  point.temperature = kNaN;
  point.groupWatts = wattsOf({{"a", kNaN}, {"b", 1}, {"c", kInfinity}, {"d", 2}});
  EXPECT_EQ(jsonOf(point),
            R"({"time":-1.7976931348623157e+308,"groupWatts":{"b":1,"d":2},"cpuPercent":0})");
}

TEST(RecordEncodingTest, TextsAreEscapedAndRepaired) {
  struct Case {
    const char* label;
    std::string_view text;
    std::string_view expected;
  };
  const Case cases[] = {
      {"plain", "abc/d", R"("abc/d")"},
      {"empty", "", R"("")"},
      {"quotes", R"(a"b\c)", R"("a\"b\\c")"},
      {"controls", std::string_view("\0\t\n\x1f\x7f", 5), "\"\\u0000\\u0009\\u000a\\u001f\x7f\""},
      {"beyond ASCII", "Zoë ☕ 🙂", R"("Zoë ☕ 🙂")"},
      {"a byte that is not UTF-8", "a\xff", "\"a\xEF\xBF\xBD\""},
      {"a character that is cut short", "\xE2\x98 \"", "\"\xEF\xBF\xBD \\\"\""},
      {"half of a surrogate pair", "\xED\xA0\x80", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
  };
  for (const Case& c : cases) {
    std::string out;
    JsonWriter::append(out, c.text);
    EXPECT_EQ(out, c.expected) << c.label;
  }
}

TEST(RecordEncodingTest, WholeNumbersOfAnySizeAreExact) {
  std::string out;
  JsonWriter json(out);
  json.required("least", std::numeric_limits<std::int64_t>::min());
  json.required("most", std::numeric_limits<std::int64_t>::max());
  json.end();
  EXPECT_EQ(out, R"({"least":-9223372036854775808,"most":9223372036854775807})");
}

}  // namespace
}  // namespace embrix
