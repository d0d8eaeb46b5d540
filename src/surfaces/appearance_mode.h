// Light or dark, or as the system has it.
#pragma once

#include <array>
#include <string_view>

#include "host/settings.h"

namespace embrix {

enum class AppearanceMode { system, light, dark };

inline constexpr std::array kAppearanceModes{AppearanceMode::system, AppearanceMode::light,
                                             AppearanceMode::dark};

// The word that stands for the mode in the settings.
std::string_view appearanceWord(AppearanceMode mode);

// The user's choice; `system` when nothing, or an unknown word, is stored.
AppearanceMode currentAppearance(const Settings& settings);

}  // namespace embrix
