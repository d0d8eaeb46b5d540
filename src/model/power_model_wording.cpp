// The model's sentences.

#include <fmt/format.h>

#include "base/format.h"
#include "model/power_model.h"
#include "model/wording.h"

namespace embrix {

namespace {

constexpr double kMostlyScreen = 0.5;  // of the whole machine

std::string_view headlineOf(LoadLevel level) {
  switch (level) {
    case LoadLevel::calm:
      return "Your Mac is chilling.";
    case LoadLevel::warm:
      return "Your Mac is warming up.";
    case LoadLevel::hot:
      return "Your Mac is running hot.";
  }
  return "Your Mac is chilling.";
}

std::string_view statusOf(LoadLevel level) {
  switch (level) {
    case LoadLevel::calm:
      return "Chilling";
    case LoadLevel::warm:
      return "Warm";
    case LoadLevel::hot:
      return "Hot";
  }
  return "Chilling";
}

}  // namespace

std::string PowerModel::heroHeadline() const {
  if (isThrottled()) return "Your Mac is cooling itself down.";
  return std::string(headlineOf(loadLevel()));
}

std::string PowerModel::heroExplanation() const {
  const double total = totalWatts();
  const Verdict verdict =
      Verdict::make(*frame_ ? (*frame_)->groups : std::vector<AppGroup>(), total);
  if (verdict.kind != Verdict::Kind::calm && verdict.subject) {
    return fmt::format("{} is doing most of the work.", *verdict.subject);
  }
  if (total > 0 && unattributedWatts().value_or(0) / total >= kMostlyScreen) {
    return "Mostly your screen. No app is working hard.";
  }
  return "No app is working hard.";
}

std::string PowerModel::statusShort() const {
  const std::string_view word = isThrottled() ? "Throttling" : statusOf(loadLevel());
  if (!*frame_ || !(*frame_)->temperature) return std::string(word);
  return fmt::format("{} at {:.0f}°C", word, *(*frame_)->temperature);
}

std::optional<std::string> PowerModel::batteryLine() const {
  if (!*frame_ || !(*frame_)->battery) return std::nullopt;
  if ((*frame_)->battery->isCharging) return "Charging";
  if ((*frame_)->battery->externalConnected) return "On power adapter";
  const auto minutes = runtimeAtWatts(totalWatts());
  if (!minutes) return std::nullopt;
  return Format::durationMinutes(Wording::wholeMinutes(*minutes)) + " of battery left";
}

std::string PowerModel::subjectForGroup(std::string_view key) const {
  const auto name = groupNames_->find(key);
  std::string fallback(name == groupNames_->end() ? key : name->second.view());
  if (!*frame_) return fallback;
  for (const AppGroup& group : (*frame_)->groups) {
    if (group.identity.key != key) continue;
    const auto bundles = group.bundles();
    if (bundles.empty() || bundles.front().name == fallback) return fallback;
    const ProcessBundle& first = bundles.front();
    const std::string copies = first.count >= 2 ? fmt::format(" ×{}", first.count) : "";
    return fmt::format("{}{} in {}", first.name.view(), copies, fallback);
  }
  return fallback;
}

}  // namespace embrix
