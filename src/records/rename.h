// The product had another name once, with a folder and settings of its own. Carries both over,
// once, before anything is read. Main thread. What cannot be carried over is left where it is,
// silently.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/settings_store.h"
#include "records/history_store.h"

namespace embrix {

struct Rename {
  static constexpr std::string_view kFormerFolder = "Torvane";
  static constexpr std::string_view kFormerDomain = "com.torvane.app";

  // Moves the former folder of the records to the present one, unless something stands there.
  // `applicationSupport` is the folder that both are in; empty when the machine has none.
  static void moveHistory(const std::string& applicationSupport);

  // Copies the former settings, unless the program has settings already. `identifier` is that of
  // the program's bundle; absent when it has none, and then nothing is copied. Before the program's
  // settings are opened.
  static void copySettings(SettingsStores& stores, const std::optional<std::string>& identifier);
};

}  // namespace embrix
