#include "records/record_encoding.h"

#include "records/json_writer.h"

namespace embrix {

namespace {

// Enough for most; a text that is longer grows.
constexpr std::size_t kUsualBytes = 4096;

std::string roomy() {
  std::string text;
  text.reserve(kUsualBytes);
  return text;
}

void appendSleepMark(std::string& out, const DischargeSession::SleepMark& mark) {
  JsonWriter json(out);
  json.required("time", mark.time);
  json.optional("percent", mark.percent);
  json.optional("remainingWh", mark.remainingWh);
  json.end();
}

}  // namespace

void appendJson(std::string& out, const HistoryPoint& point) {
  JsonWriter json(out);
  json.required("time", point.time);
  json.optional("systemWatts", point.systemWatts);
  json.object("groupWatts", point.groupWatts);
  json.optional("temperature", point.temperature);
  json.required("cpuPercent", point.cpuPercent);
  json.optional("label", point.label);
  json.end();
}

std::string jsonOf(const DailyRecord& day) {
  std::string text = roomy();
  JsonWriter json(text);
  json.required("day", day.day);
  json.required("wattHours", day.wattHours);
  json.object("appWattHours", day.appWattHours);
  json.object("appNames", day.appNames);
  json.optional("health", day.health);
  json.optional("cycles", day.cycles);
  json.optional("fullWh", day.fullWh);
  json.end();
  text.shrink_to_fit();  // it is kept
  return text;
}

std::string jsonOf(const DayLedger& ledger) {
  std::string text = roomy();
  JsonWriter json(text);
  json.required("day", ledger.day);
  json.required("totalWattHours", ledger.totalWattHours);
  json.object("groupWattHours", ledger.groupWattHours);
  json.object("groupNames", ledger.groupNames);
  json.required("hotSeconds", ledger.hotSeconds);
  json.required("spells", ledger.spells);
  json.required("longestSpellSeconds", ledger.longestSpellSeconds);
  json.required("peakWatts", ledger.peakWatts);
  json.optional("peakTime", ledger.peakTime);
  json.optional("peakLabel", ledger.peakLabel);
  json.required("spellSeconds", ledger.spellSeconds);
  json.end();
  return text;
}

std::string jsonOf(const DischargeSession& session) {
  std::string text = roomy();
  JsonWriter json(text);
  json.required("start", session.start);
  json.optional("startPercent", session.startPercent);
  json.required("lastTime", session.lastTime);
  json.required("totalWattHours", session.totalWattHours);
  json.object("groupWattHours", session.groupWattHours);
  json.object("groupNames", session.groupNames);
  json.required("asleepSeconds", session.asleepSeconds);
  json.required("asleepPercent", session.asleepPercent);
  json.required("asleepWattHours", session.asleepWattHours);
  if (session.sleepStart) {
    json.begin("sleepStart");
    appendSleepMark(text, *session.sleepStart);
  }
  json.end();
  return text;
}

std::string jsonOf(const PowerBaseline& baseline) {
  std::string text = roomy();
  JsonWriter json(text);
  json.begin("samples");
  text += '[';
  text += baseline.samplesText();
  text += ']';
  json.required("lastAdded", baseline.lastAdded());
  json.end();
  return text;
}

}  // namespace embrix
