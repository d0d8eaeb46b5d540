// What the hero of a surface says: how the machine is right now, in a colour, a mood and words, and
// the one app that could be calmed. A pure reading of the model. Main thread only, as the model is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/power_model.h"
#include "surfaces/mascot_features.h"
#include "surfaces/menu_item.h"
#include "surfaces/palette.h"

namespace embrix {

// The button that calms whom the verdict names, or gives it its speed back.
struct CulpritContent {
  std::string groupKey;
  std::string name;
  std::string label;
  std::string help;
  bool isCalmed = false;
  std::vector<MenuItem> menu;

  // Absent when the verdict names nobody, and when anything of the culprit belongs to another user.
  static std::optional<CulpritContent> of(const PowerModel& model);

  static constexpr auto fields() {
    return std::tuple{field("label", &CulpritContent::label), field("help", &CulpritContent::help),
                      field("isCalmed", &CulpritContent::isCalmed),
                      field("menu", &CulpritContent::menu)};
  }
  bool operator==(const CulpritContent&) const = default;
};

struct HeroContent {
  static constexpr double kCountUp = 0.9;  // seconds that the figure rolls

  std::string eyebrow = "Right now";
  double watts = 0;  // of the whole machine
  std::string unit = "W";
  std::string status;
  std::string explanation;
  EX::Hue fill = EX::Hue::mint;
  MascotMood mood = MascotMood::happy;
  bool isHot = false;
  std::optional<double> relief;  // when memory was last freed, seconds since 1970
  std::optional<CulpritContent> culprit;

  static HeroContent of(const PowerModel& model);

  static EX::Hue heroFill(const PowerModel& model);
  static MascotMood moodOf(const PowerModel& model);

  // The figure as it is shown, also on its way to another: a decimal below 10 watts, none above,
  // and a plain "0" for what rounds to nothing.
  static std::string figure(double watts);

  static constexpr auto fields() {
    return std::tuple{field("eyebrow", &HeroContent::eyebrow),
                      field("watts", &HeroContent::watts),
                      field("unit", &HeroContent::unit),
                      field("status", &HeroContent::status),
                      field("explanation", &HeroContent::explanation),
                      field("fill", &HeroContent::fill),
                      field("mood", &HeroContent::mood),
                      field("isHot", &HeroContent::isHot),
                      field("relief", &HeroContent::relief),
                      field("culprit", &HeroContent::culprit)};
  }
  bool operator==(const HeroContent&) const = default;
};

}  // namespace embrix
