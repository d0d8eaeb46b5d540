// The pages of the dashboard.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace embrix {

enum class DashboardSection { overview, battery, running, servers, apps, cleanup, settings };

inline constexpr std::array kDashboardSections = {
    DashboardSection::overview, DashboardSection::battery, DashboardSection::running,
    DashboardSection::servers,  DashboardSection::apps,    DashboardSection::cleanup,
    DashboardSection::settings,
};

constexpr std::string_view dashboardSectionWord(DashboardSection section) {
  switch (section) {
    case DashboardSection::overview:
      return "overview";
    case DashboardSection::battery:
      return "battery";
    case DashboardSection::running:
      return "running";
    case DashboardSection::servers:
      return "servers";
    case DashboardSection::apps:
      return "apps";
    case DashboardSection::cleanup:
      return "cleanup";
    case DashboardSection::settings:
      return "settings";
  }
  return "overview";
}

// The page with exactly that word; absent when there is none.
constexpr std::optional<DashboardSection> dashboardSectionOf(std::string_view word) {
  for (const DashboardSection section : kDashboardSections) {
    if (dashboardSectionWord(section) == word) return section;
  }
  return std::nullopt;
}

}  // namespace embrix
