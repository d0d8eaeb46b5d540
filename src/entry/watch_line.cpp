#include "entry/watch_line.h"

#include <algorithm>
#include <utility>

#include "entry/pretty_json.h"
#include "model/load_level.h"
#include "model/verdict.h"

namespace embrix {

namespace {

template <typename Texts>
std::vector<std::string> sorted(const Texts& texts) {
  std::vector<std::string> all;
  for (const auto& text : texts) all.emplace_back(std::string_view(text));
  std::sort(all.begin(), all.end());
  return all;
}

void writeTexts(PrettyJSON& json, const std::vector<std::string>& texts) {
  json.beginArray();
  for (const std::string& text : texts) json.text(text);
  json.endArray();
}

}  // namespace

std::string watchLine(const PowerModel& model, const std::vector<std::string>& alerts) {
  const Frame& frame = **model.frame();
  PrettyJSON json(PrettyJSON::Lines::one);
  json.beginObject();
  json.key("alerts");
  writeTexts(json, alerts);
  json.key("calmed");
  json.beginArray();
  for (const std::int32_t pid : *model.calmed()) json.integer(pid);
  json.endArray();
  json.key("loadLevel");
  json.text(loadLevelWord(model.loadLevel()));
  json.key("runaways");
  writeTexts(json, sorted(*model.runaways()));
  json.key("time");
  json.decimal(frame.date);
  json.key("totalWatts");
  json.decimal(model.totalWatts());
  json.key("verdict");
  json.text(Verdict::make(frame.groups, model.totalWatts()).headline);
  json.endObject();
  return std::move(json).finish().value_or("") + "\n";
}

}  // namespace embrix
