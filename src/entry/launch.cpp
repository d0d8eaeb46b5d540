#include "entry/launch.h"

#include <string_view>
#include <utility>

#include "base/number_text.h"
#include "entry/options.h"

namespace embrix {

namespace {

constexpr const char* kTestingSuite = "app.embrix.uitesting";

// "key=value", split at the first "=". A pair that lacks either side sets nothing.
void applyPair(std::string_view pair, SettingsStore& store) {
  const std::size_t equals = pair.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = pair.substr(0, equals);
  const std::string_view value = pair.substr(equals + 1);
  if (key.empty() || value.empty()) return;
  if (const auto number = wholeDouble(value)) {
    store.set(key, *number);
  } else {
    store.set(key, std::string(value));
  }
}

void applyPairs(const std::vector<std::string>& arguments, SettingsStore& store) {
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    if (arguments[i] != option::kSet) continue;
    ++i;
    applyPair(arguments[i], store);
  }
}

}  // namespace

Launch::Launch(std::vector<std::string> arguments, SettingsStores& stores)
    : arguments_(std::move(arguments)),
      stores_(stores),
      isUITesting_(hasOption(arguments_, option::kUITesting)),
      usesFixture_(isUITesting_ && !hasOption(arguments_, option::kLive)) {}

Settings& Launch::defaults() {
  if (!defaults_) defaults_ = openDefaults();
  return *defaults_;
}

Settings Launch::openDefaults() const {
  if (isUITesting_) {
    if (auto throwaway = stores_.open(kTestingSuite)) {
      throwaway->removeAll();
      applyPairs(arguments_, *throwaway);
      return Settings(std::move(throwaway));
    }
  }
  return Settings(stores_.open(""));
}

}  // namespace embrix
