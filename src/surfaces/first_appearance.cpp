#include "surfaces/first_appearance.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "surfaces/surface_settings.h"

namespace embrix {

namespace {

constexpr std::string_view kDashboard = "--dashboard";

}  // namespace

FirstAppearance::FirstAppearance(PowerModel& model, Scheduler& scheduler,
                                 const std::vector<std::string>& arguments, bool isSnapshotRun,
                                 OpenWindow openWindow)
    : model_(model), openWindow_(std::move(openWindow)) {
  model_.setOpenDashboard([this](DashboardSection section) { open(section, true); });
  if (!model_.defaults().boolFor(SurfaceSettings::kHasSeenWelcome) && !isSnapshotRun) {
    welcome_ = scheduler.after(kWelcomeDelay, [this] { open(DashboardSection::overview, true); });
  }
  if (const auto section = requestedSection(arguments)) open(*section, false);
}

FirstAppearance::~FirstAppearance() {
  model_.setOpenDashboard({});
}

void FirstAppearance::open(DashboardSection section, bool activates) {
  model_.showSection(section);
  openWindow_(activates);
}

std::optional<DashboardSection> FirstAppearance::requestedSection(
    const std::vector<std::string>& arguments) {
  const auto option = std::find(arguments.begin(), arguments.end(), kDashboard);
  if (option == arguments.end()) return std::nullopt;
  if (option + 1 == arguments.end()) return DashboardSection::overview;
  return dashboardSectionOf(*(option + 1)).value_or(DashboardSection::overview);
}

}  // namespace embrix
