#include "surfaces/hero_content.h"

#include <algorithm>

#include <fmt/format.h>

#include "surfaces/calm_rule_menu.h"

namespace embrix {

namespace {

bool isThrottled(const PowerModel& model) {
  return *model.frame() && embrix::isThrottled((*model.frame())->thermalState);
}

}  // namespace

std::optional<CulpritContent> CulpritContent::of(const PowerModel& model) {
  if (!*model.frame()) return std::nullopt;
  const Frame& frame = **model.frame();
  const Verdict verdict = Verdict::make(frame.groups, model.totalWatts());
  if (verdict.kind == Verdict::Kind::calm || frame.groups.empty()) return std::nullopt;

  const GroupIdentity& culprit = frame.groups.front().identity;
  const auto targets = model.targetsInGroup(culprit.key);
  const bool isOurs = std::all_of(targets.begin(), targets.end(),
                                  [&](const ProcessRow& row) { return row.uid == model.uid(); });
  if (targets.empty() || !isOurs) return std::nullopt;

  CulpritContent content{.groupKey = culprit.key.string(),
                         .name = verdict.name.value_or(culprit.name.string()),
                         .label = {},
                         .help = {},
                         .isCalmed = model.isCalmed(targets),
                         .menu = {}};
  if (content.isCalmed) {
    content.label = fmt::format("Restore {}", content.name);
    content.help = "Give it full speed again";
  } else {
    content.label = fmt::format("Calm {}", content.name);
    content.help = "Keep it running, slower and cooler, on the efficiency cores";
  }
  content.menu.push_back({.action = "quit", .label = fmt::format("Quit {}", content.name)});
  if (culprit.name != "System") {
    content.menu.push_back(CalmRuleMenu::make(model, culprit.name.string()));
  }
  return content;
}

EX::Hue HeroContent::heroFill(const PowerModel& model) {
  if (isThrottled(model)) return EX::Hue::coral;
  switch (model.loadLevel()) {
    case LoadLevel::calm:
      return EX::Hue::mint;
    case LoadLevel::warm:
      return EX::Hue::yellow;
    case LoadLevel::hot:
      return EX::Hue::coral;
  }
  return EX::Hue::mint;
}

MascotMood HeroContent::moodOf(const PowerModel& model) {
  if (model.isHot()) return MascotMood::stressed;
  return model.loadLevel() == LoadLevel::warm ? MascotMood::sweaty : MascotMood::happy;
}

std::string HeroContent::figure(double watts) {
  constexpr double kNothing = 0.05;
  constexpr double kWholeFrom = 10;
  if (!(watts >= kNothing)) return "0";
  return watts < kWholeFrom ? fmt::format("{:.1f}", watts) : fmt::format("{:.0f}", watts);
}

HeroContent HeroContent::of(const PowerModel& model) {
  HeroContent content;
  content.watts = model.totalWatts();
  content.status = model.statusShort();
  content.explanation = model.heroExplanation();
  content.fill = heroFill(model);
  content.mood = moodOf(model);
  content.isHot = model.isHot();
  const auto& freed = *model.lastFreed();
  if (freed && freed->bytes > 0) content.relief = freed->date;
  content.culprit = CulpritContent::of(model);
  return content;
}

}  // namespace embrix
