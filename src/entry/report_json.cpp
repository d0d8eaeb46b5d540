#include "entry/report_json.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "entry/pretty_json.h"
#include "entry/report_figures.h"

namespace embrix {

namespace {

constexpr std::size_t kMostApps = 15;
constexpr std::size_t kMostProcesses = 5;

void writeProcess(PrettyJSON& json, const ProcessRow& row) {
  json.beginObject();
  json.key("cpuPercent");
  json.decimal(row.cpuPercent);
  json.key("name");
  json.text(row.name);
  json.key("pid");
  json.integer(row.pid);
  json.key("watts");
  json.decimal(row.watts);
  json.endObject();
}

void writeApp(PrettyJSON& json, const AppGroup& group) {
  json.beginObject();
  json.key("cpuPercent");
  json.decimal(group.cpuPercent);
  json.key("name");
  json.text(group.identity.name);
  json.key("processes");
  json.beginArray();
  for (std::size_t i = 0; i < std::min(group.processes.size(), kMostProcesses); ++i) {
    if (isWorthALine(group.processes[i])) writeProcess(json, group.processes[i]);
  }
  json.endArray();
  json.key("watts");
  json.decimal(group.watts);
  json.endObject();
}

// Halves go away from zero.
void writeWhole(PrettyJSON& json, double value) {
  json.decimal(std::round(value));
}

}  // namespace

std::string reportJSON(const Frame& frame) {
  PrettyJSON json;
  json.beginObject();
  json.key("apps");
  json.beginArray();
  for (std::size_t i = 0; i < std::min(frame.groups.size(), kMostApps); ++i) {
    writeApp(json, frame.groups[i]);
  }
  json.endArray();
  json.key("fansRPM");
  json.beginArray();
  for (const Fan& fan : frame.fans) writeWhole(json, fan.rpm);
  json.endArray();
  json.key("processWatts");
  json.decimal(processWatts(frame));
  json.key("systemWatts");
  json.decimalOrNull(systemWatts(frame));
  json.key("temperature");
  json.decimalOrNull(frame.temperature);
  json.key("thermalState");
  json.text(thermalStateName(frame.thermalState));
  json.endObject();
  return std::move(json).finish().value_or("") + "\n";
}

}  // namespace embrix
