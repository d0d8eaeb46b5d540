// What the watts of the whole machine mean on this machine: calm, warm or hot. Plain functions; any
// thread.
#pragma once

#include <optional>
#include <string_view>

namespace embrix {

enum class LoadLevel { calm, warm, hot };

constexpr std::string_view loadLevelWord(LoadLevel level) {
  switch (level) {
    case LoadLevel::calm:
      return "calm";
    case LoadLevel::warm:
      return "warm";
    case LoadLevel::hot:
      return "hot";
  }
  return "calm";
}

// Watts of the whole machine. Set by hand, `warm` may lie above `hot`; then nothing is ever warm.
struct LoadThresholds {
  double warm = 0;
  double hot = 0;

  // For a machine with so many performance cores (0 when unknown) that draws `median` watts on an
  // ordinary day. Without a median the floors, which are safe for a chip of that size.
  static LoadThresholds automatic(int performanceCores, std::optional<double> median);

  // A value exactly at a threshold has reached it.
  LoadLevel levelAt(double watts) const;

  bool operator==(const LoadThresholds&) const = default;
};

}  // namespace embrix
