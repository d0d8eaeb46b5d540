// One line of a menu, ready to be shown, with the word for what it does. Plain values; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "surfaces/record_fields.h"

namespace embrix {

struct MenuItem {
  std::string action;  // what whoever made the menu knows the choice by; empty for a divider
  std::string label;
  std::string shortcut;         // a key sequence such as "Ctrl+,"; empty without one
  std::optional<bool> isOn;     // of a toggle; absent for a plain item
  std::vector<MenuItem> items;  // of a submenu; empty for what acts

  static MenuItem divider() { return {}; }

  static constexpr auto fields() {
    return std::tuple{field("action", &MenuItem::action), field("label", &MenuItem::label),
                      field("shortcut", &MenuItem::shortcut), field("isOn", &MenuItem::isOn),
                      field("items", &MenuItem::items)};
  }
  bool operator==(const MenuItem&) const = default;
};

}  // namespace embrix
