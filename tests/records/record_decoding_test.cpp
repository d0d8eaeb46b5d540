#include "records/record_decoding.h"

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json.h"
#include "records/record_encoding.h"
#include "sample_records.h"

namespace embrix {
namespace {

using namespace std::string_view_literals;

using testing::ElementsAre;
using testing::SizeIs;

std::string historyJson(const std::vector<HistoryPoint>& points) {
  std::string text = "[";
  for (const HistoryPoint& point : points) {
    if (text.size() > 1) text += ',';
    appendJson(text, point);
  }
  return text + "]";
}

std::string archiveJson(const Archive& archive) {
  std::string text;
  for (const std::string_view piece : archive.text()) text += piece;
  return text;
}

// Each kind of file: a whole one, and whether a text is read as a record at all.
struct Kind {
  const char* name;
  std::string json;
  std::function<bool(std::string_view)> isRead;
  std::function<std::string(std::string_view)> rewritten;  // of a text that is read
};

std::vector<Kind> kinds() {
  return {
      {"history", historyJson({fullPoint(), barePoint()}),
       [](std::string_view json) { return historyOfJson(json).has_value(); },
       [](std::string_view json) { return historyJson(*historyOfJson(json)); }},
      {"ledger", jsonOf(fullLedger()),
       [](std::string_view json) { return ledgerOfJson(json).has_value(); },
       [](std::string_view json) { return jsonOf(*ledgerOfJson(json)); }},
      {"archive", archiveJson(Archive({fullDay(), bareDay()})),
       [](std::string_view json) { return archiveOfJson(json).has_value(); },
       [](std::string_view json) { return archiveJson(*archiveOfJson(json)); }},
      {"discharge", jsonOf(fullSession()),
       [](std::string_view json) { return dischargeOfJson(json).has_value(); },
       [](std::string_view json) { return jsonOf(*dischargeOfJson(json)); }},
      {"baseline", jsonOf(smallBaseline()),
       [](std::string_view json) { return baselineOfJson(json).has_value(); },
       [](std::string_view json) { return jsonOf(*baselineOfJson(json)); }},
  };
}

// Every object in the value, itself among them, with maps left out: their keys are data.
void eachRecord(Json& value, const std::function<void(Json&)>& visit) {
  const auto isMap = [](const std::string& key) {
    return key.ends_with("Watts") || key.ends_with("WattHours") || key.ends_with("Names");
  };
  if (value.is_array()) {
    for (Json& each : value) eachRecord(each, visit);
  } else if (value.is_object()) {
    for (auto& [key, each] : value.items()) {
      if (!isMap(key)) eachRecord(each, visit);
    }
    visit(value);
  }
}

// All texts that come of changing one field of one record, with the field's name. A change that
// returns false does not apply to the field.
using Change = std::function<bool(Json& record, const std::string& field)>;
std::vector<std::pair<std::string, std::string>> changedFields(const std::string& json,
                                                               const Change& change) {
  std::vector<std::pair<std::string, std::string>> texts;
  Json whole = *parseJson(json);
  eachRecord(whole, [&](Json& record) {
    const Json before = record;
    for (const auto& [field, value] : before.items()) {
      if (change(record, field)) texts.emplace_back(field, whole.dump());
      record = before;
    }
  });
  EXPECT_FALSE(texts.empty());
  return texts;
}

bool isOptional(const std::string& field) {
  for (const char* name :
       {"systemWatts", "temperature", "label", "peakTime", "peakLabel", "health", "cycles",
        "fullWh", "startPercent", "sleepStart", "percent", "remainingWh"}) {
    if (field == name) return true;
  }
  return false;
}

TEST(RecordDecodingTest, WhatWasWrittenIsReadBack) {
  EXPECT_THAT(*historyOfJson(historyJson({fullPoint(), barePoint()})),
              ElementsAre(fullPoint(), barePoint()));
  EXPECT_EQ(ledgerOfJson(jsonOf(fullLedger())), fullLedger());
  EXPECT_EQ(ledgerOfJson(jsonOf(DayLedger::fresh("2026-03-02"))), DayLedger::fresh("2026-03-02"));
  EXPECT_EQ(archiveOfJson(archiveJson(Archive({fullDay(), bareDay()}))),
            Archive({fullDay(), bareDay()}));
  EXPECT_EQ(dischargeOfJson(jsonOf(fullSession())), fullSession());
  EXPECT_EQ(dischargeOfJson(jsonOf(bareSession())), bareSession());
  EXPECT_EQ(baselineOfJson(jsonOf(smallBaseline())), smallBaseline());
  EXPECT_EQ(baselineOfJson(jsonOf(PowerBaseline())), PowerBaseline());
}

TEST(RecordDecodingTest, AnEmptyListIsAHistory) {
  EXPECT_THAT(*historyOfJson("[]"), SizeIs(0));
  EXPECT_THAT(archiveOfJson(R"({"days":[]})")->days(), SizeIs(0));
}

TEST(RecordDecodingTest, ATextThatIsCutShortAnywhereIsNoRecord) {
  for (const Kind& kind : kinds()) {
    ASSERT_TRUE(kind.isRead(kind.json)) << kind.name;
    for (std::size_t length = 0; length < kind.json.size(); ++length) {
      ASSERT_FALSE(kind.isRead(kind.json.substr(0, length))) << kind.name << " " << length;
    }
  }
}

TEST(RecordDecodingTest, NoSingleByteMakesItCrashOrReadWhatItCannotWrite) {
  for (const Kind& kind : kinds()) {
    for (std::size_t i = 0; i < kind.json.size(); ++i) {
      for (const char byte : {'\0', '"', '\\', '{', '}', '9', '-', 'e', '\xff'}) {
        std::string json = kind.json;
        json[i] = byte;
        if (kind.isRead(json)) {
          ASSERT_TRUE(kind.isRead(kind.rewritten(json))) << json;
        }
      }
    }
  }
}

TEST(RecordDecodingTest, KeysThatNobodyKnowsArePassedOver) {
  for (const Kind& kind : kinds()) {
    Json json = *parseJson(kind.json);
    eachRecord(json, [](Json& record) {
      record["future"] = {{"list", {1, "x", nullptr, {{"deep", true}}}}};
      record[""] = 5;
    });
    ASSERT_TRUE(kind.isRead(json.dump())) << kind.name;
    EXPECT_EQ(parseJson(kind.rewritten(json.dump())), parseJson(kind.rewritten(kind.json)))
        << kind.name;
  }
}

bool isWholeNumber(const std::string& field) {
  for (const char* name :
       {"spells", "health", "cycles", "percent", "startPercent", "asleepPercent"}) {
    if (field == name) return true;
  }
  return false;
}

TEST(RecordDecodingTest, AMissingFieldIsAbsentOrSpoilsTheWholeFile) {
  const Change remove = [](Json& record, const std::string& field) {
    return record.erase(field) == 1;
  };
  for (const Kind& kind : kinds()) {
    for (const auto& [field, json] : changedFields(kind.json, remove)) {
      EXPECT_EQ(kind.isRead(json), isOptional(field)) << kind.name << " " << field;
    }
  }
}

TEST(RecordDecodingTest, NullIsAsGoodAsMissing) {
  const Change makeNull = [](Json& record, const std::string& field) {
    record[field] = nullptr;
    return true;
  };
  for (const Kind& kind : kinds()) {
    for (const auto& [field, json] : changedFields(kind.json, makeNull)) {
      EXPECT_EQ(kind.isRead(json), isOptional(field)) << kind.name << " " << field;
    }
  }
}

TEST(RecordDecodingTest, AValueOfAnotherTypeSpoilsTheWholeFile) {
  const std::vector<Json> others = {
      true, "text", Json::array({"x"}), {{"key", Json::array()}}, 0.5};
  for (const Kind& kind : kinds()) {
    for (const Json& other : others) {
      const auto texts = changedFields(kind.json, [&](Json& record, const std::string& field) {
        Json& value = record[field];
        const bool isOfThatType = other.is_number() ? value.is_number() && !isWholeNumber(field)
                                  : other.is_array() || other.is_object()
                                      ? false
                                      : value.type() == other.type();
        value = other;
        return !isOfThatType;
      });
      for (const auto& [field, json] : texts) {
        EXPECT_FALSE(kind.isRead(json)) << kind.name << " " << field << " " << json;
      }
    }
  }
}

TEST(RecordDecodingTest, WrongEntriesOfMapsAndListsSpoilTheWholeFile) {
  for (const char* json : {
           R"([{"time":1,"groupWatts":{"a":"1"},"cpuPercent":0}])",
           R"([{"time":1,"groupWatts":{"a":null},"cpuPercent":0}])",
           R"([{"time":1,"groupWatts":[],"cpuPercent":0}])",
           R"([{"time":1,"groupWatts":{},"cpuPercent":0},5])",
           R"([{"time":1,"groupWatts":{},"cpuPercent":0},null])",
           R"({"time":1,"groupWatts":{},"cpuPercent":0})",
           R"(5)",
           R"(null)",
       }) {
    EXPECT_FALSE(historyOfJson(json)) << json;
  }
  EXPECT_FALSE(baselineOfJson(R"({"samples":[1,null],"lastAdded":0})"));
  EXPECT_FALSE(baselineOfJson(R"({"samples":{"0":1},"lastAdded":0})"));
  EXPECT_FALSE(archiveOfJson(R"({"days":[5]})"));
  EXPECT_FALSE(archiveOfJson(R"([])"));
  EXPECT_FALSE(archiveOfJson(
      R"({"days":[{"day":"x","wattHours":0,"appWattHours":{},"appNames":{"a":1}}]})"));
  EXPECT_FALSE(dischargeOfJson(R"([])"));
}

TEST(RecordDecodingTest, APointWithoutItsCPUYieldsNoHistoryAtAll) {
  EXPECT_FALSE(historyOfJson(R"([{"time":1,"groupWatts":{},"cpuPercent":0},)"
                             R"({"time":2,"groupWatts":{}}])"));
}

TEST(RecordDecodingTest, AWholeNumberMayBeWrittenAsAFractionOfNothing) {
  const auto cyclesOf = [](const std::string& cycles) -> std::optional<int> {
    const auto archive = archiveOfJson(
        R"({"days":[{"day":"2026-03-01","wattHours":1,"appWattHours":{},"appNames":{},"cycles":)" +
        cycles + "}]}");
    return archive ? archive->days().front().cycles : std::nullopt;
  };
  EXPECT_EQ(cyclesOf("50"), 50);
  EXPECT_EQ(cyclesOf("50.0"), 50);
  EXPECT_EQ(cyclesOf("5e1"), 50);
  EXPECT_EQ(cyclesOf("-0.0"), 0);
  for (const char* const no : {"50.5", "1e300", "-1e19", "9223372036854775808.0", "\"50\""}) {
    EXPECT_EQ(cyclesOf(no), std::nullopt) << no;
  }
}

TEST(RecordDecodingTest, OnlyPointsAboveTheBoundAreKeptAndTheOthersMustBeWholeAsWell) {
  const auto historyWith = [](const std::string& old) {
    return historyOfJson("[" + old + R"(,{"time":9,"groupWatts":{"a":1},"cpuPercent":0}])", 5);
  };
  const auto points =
      historyWith(R"({"time":5,"groupWatts":{"a":1,"b":2.5},"cpuPercent":0,"label":"x"})");
  ASSERT_TRUE(points);
  ASSERT_THAT(*points, SizeIs(1));
  EXPECT_EQ(points->front().time, 9);
  EXPECT_EQ(points->front().groupWatts, wattsOf({{"a", 1}}));
  for (const char* const old :
       {R"({"time":1,"groupWatts":{}})", R"({"time":1,"cpuPercent":0})",
        R"({"time":1,"groupWatts":[],"cpuPercent":0})",
        R"({"time":1,"groupWatts":{"a":1,"b":"2"},"cpuPercent":0})",
        R"({"time":1,"groupWatts":{"a":null},"cpuPercent":0})",
        R"({"time":1,"groupWatts":{},"cpuPercent":0,"label":1})", R"({"time":null})"}) {
    EXPECT_FALSE(historyWith(old)) << old;
  }
}

TEST(RecordDecodingTest, OfAKeyThatStandsTwiceTheLastValueCounts) {
  const auto points = historyOfJson(
      R"([{"time":"x","cpuPercent":1,"groupWatts":{"a":1,"b":3,"a":2},"time":5,"label":"x","label":null}])");
  ASSERT_TRUE(points);
  EXPECT_EQ(points->front().time, 5);
  EXPECT_EQ(points->front().groupWatts, wattsOf({{"a", 2}, {"b", 3}}));
  EXPECT_EQ(points->front().label, std::nullopt);
  EXPECT_FALSE(historyOfJson(R"([{"time":5,"cpuPercent":1,"groupWatts":{},"time":null}])"));
  const auto ledger = ledgerOfJson(
      R"({"day":"d","totalWattHours":0,"groupWattHours":{"a":1,"a":2},"groupNames":{},)"
      R"("hotSeconds":0,"spells":0,"longestSpellSeconds":0,"peakWatts":0,"spellSeconds":0})");
  EXPECT_EQ(ledger->groupWattHours.at("a"sv), 2);
}

TEST(RecordDecodingTest, NumbersOutsideTheirRangeSpoilTheWholeFile) {
  const auto session = [](std::string_view percent) {
    return dischargeOfJson(R"({"start":0,"lastTime":0,"totalWattHours":0,"groupWattHours":{},)"
                           R"("groupNames":{},"asleepSeconds":0,"asleepPercent":)" +
                           std::string(percent) + R"(,"asleepWattHours":0})");
  };
  EXPECT_EQ(session("2147483647")->asleepPercent, 2147483647);
  EXPECT_EQ(session("-2147483648")->asleepPercent, std::numeric_limits<int>::min());
  for (const char* percent :
       {"2147483648", "-2147483649", "9223372036854775807", "9223372036854775808",
        "18446744073709551615", "18446744073709551616", "1e400", "-1e400", "NaN", "Infinity",
        "0x10", "+5", "05", "1.", ".5", "-"}) {
    EXPECT_FALSE(session(percent)) << percent;
  }
  EXPECT_FALSE(baselineOfJson(R"({"samples":[3.5e38],"lastAdded":0})"));
  EXPECT_FALSE(baselineOfJson(R"({"samples":[-3.4028235677973366e38],"lastAdded":0})"));
  EXPECT_EQ(baselineOfJson(R"({"samples":[-3.4028235e38],"lastAdded":0})")->samples().front(),
            std::numeric_limits<float>::lowest());
  EXPECT_FALSE(baselineOfJson(R"({"samples":[],"lastAdded":1e309})"));
  EXPECT_EQ(baselineOfJson(R"({"samples":[],"lastAdded":1e308})")->lastAdded(), 1e308);
  EXPECT_EQ(baselineOfJson(R"({"samples":[],"lastAdded":18446744073709551615})")->lastAdded(),
            18446744073709551615.0);
}

TEST(RecordDecodingTest, WhatIsNoJsonIsNoRecord) {
  for (const Kind& kind : kinds()) {
    for (const std::string& json :
         {std::string(), std::string("  "), kind.json + "x", kind.json + kind.json,
          "\xff" + kind.json, std::string(5000, '['), std::string(5000, '{'),
          std::string("\0", 1) + kind.json}) {
      EXPECT_FALSE(kind.isRead(json)) << kind.name << " " << json.substr(0, 20);
    }
    EXPECT_TRUE(kind.isRead(" \r\n\t" + kind.json + "\n")) << kind.name;
  }
}

TEST(RecordDecodingTest, TextsMayHoldWhatJsonEscapes) {
  const auto points = historyOfJson(
      R"([{"time":1,"groupWatts":{"\"\\\/\u0041\u0000":1},"cpuPercent":0,"label":"\ud83d\ude42\t"}])");
  ASSERT_TRUE(points);
  EXPECT_EQ(points->front().watts(std::string_view("\"\\/A\0", 5)), 1);
  EXPECT_EQ(points->front().label, SharedText("🙂\t"));
  for (const char* label : {R"("\ud83d")", R"("\x41")", "\"\t\"", "\"\xff\""}) {
    EXPECT_FALSE(historyOfJson(R"([{"time":1,"groupWatts":{},"cpuPercent":0,"label":)" +
                               std::string(label) + "}]"))
        << label;
  }
}

// Names and numbers of every kind that a machine can bring about.
TEST(RecordDecodingTest, WhateverIsInARecordItsFileCanBeReadAgain) {
  const std::string_view names[] = {"",
                                    "plain",
                                    "\xff\xfe",
                                    "a\0b",
                                    "\"\\\b\f\n\r\t",
                                    "\xE2",
                                    "\x80\x80",
                                    "☕",
                                    "\u2028",
                                    "\xED\xA0\x80",
                                    "\xF4\x90\x80\x80",
                                    std::string_view("\0", 1)};
  const double numbers[] = {0.0,
                            -0.0,
                            1,
                            -1e-310,
                            5e-324,
                            std::numeric_limits<double>::max(),
                            std::numeric_limits<double>::infinity(),
                            -std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()};
  for (const std::string_view name : names) {
    for (const double number : numbers) {
      const SharedText text(name);
      const auto finite = [](double value) { return std::isfinite(value) ? value : 0; };
      HistoryPoint point{.time = number,
                         .systemWatts = number,
                         .groupWatts = wattsOf({{name, number}, {"other", 1}}),
                         .temperature = number,
                         .cpuPercent = number,
                         .label = text};
      const auto points = historyOfJson(historyJson({point}));
      ASSERT_TRUE(points) << name << " " << number;
      EXPECT_EQ(points->front().watts("other"), 1);
      EXPECT_EQ(points->front().systemWatts.has_value(), std::isfinite(number));
      EXPECT_EQ(points->front().systemWatts.value_or(0), finite(number));

      DayLedger ledger = DayLedger::fresh(name);
      ledger.groupWattHours[text] = number;
      ledger.groupNames[text] = text;
      ledger.peakTime = number;
      ledger.peakLabel = text;
      ledger.totalWattHours = number;
      EXPECT_TRUE(ledgerOfJson(jsonOf(ledger)));

      Archive archive;
      archive.record(ledger, BatteryReading{.fullWh = number});
      EXPECT_TRUE(archiveOfJson(archiveJson(archive)));

      DischargeSession session = DischargeSession::begun(number, {});
      session.groupWattHours[text] = number;
      session.groupNames[text] = text;
      session.sleepStart = {.time = number, .percent = {}, .remainingWh = number};
      EXPECT_TRUE(dischargeOfJson(jsonOf(session)));

      EXPECT_TRUE(baselineOfJson(jsonOf(
          PowerBaseline({static_cast<float>(finite(std::clamp(number, -1e38, 1e38)))}, number))));
    }
  }
}

TEST(RecordDecodingTest, EveryDoubleComesBackAsItWas) {
  std::mt19937_64 random(11);
  std::vector<SharedMap<double>::Entry> entries;
  while (entries.size() < 100'000) {
    const double number = std::bit_cast<double>(random());
    if (!std::isfinite(number)) continue;
    entries.push_back({SharedText(std::to_string(entries.size())), number});
  }
  std::uniform_real_distribution<double> watts(0.05, 100);
  while (entries.size() < 200'000) {
    entries.push_back({SharedText(std::to_string(entries.size())), watts(random)});
  }
  HistoryPoint point = barePoint();
  point.groupWatts = SharedMap<double>(std::move(entries));
  const auto back = historyOfJson(historyJson({point}));
  ASSERT_TRUE(back);
  ASSERT_EQ(back->front().groupWatts.size(), point.groupWatts.size());
  for (const auto& [key, number] : point.groupWatts) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back->front().watts(key)),
              std::bit_cast<std::uint64_t>(number));
  }
}

TEST(RecordDecodingTest, EverySampleComesBackAsItWas) {
  std::mt19937 random(12);
  std::vector<float> samples;
  while (samples.size() < 200'000) {
    const float sample = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isfinite(sample)) samples.push_back(sample);
  }
  EXPECT_EQ(baselineOfJson(jsonOf(PowerBaseline(samples, 0)))->samples(), samples);
}

TEST(RecordDecodingTest, EqualKeysOfManyPointsAreOneText) {
  const auto points = historyOfJson(historyJson({fullPoint(), barePoint(), fullPoint()}));
  EXPECT_EQ(points->front().groupWatts.begin()->key.view().data(),
            points->back().groupWatts.begin()->key.view().data());
}

}  // namespace
}  // namespace embrix
