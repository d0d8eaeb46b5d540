#include "base/format.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "base/text.h"

namespace embrix {
namespace {

constexpr double kBinaryMegabyte = 1024.0 * 1024.0;
constexpr double kBinaryGigabyte = 1024.0 * kBinaryMegabyte;
constexpr double kDecimalGigabyte = 1e9;

constexpr std::int64_t kHour = 60;         // minutes
constexpr std::int64_t kDay = 24 * kHour;  // minutes
constexpr double kSecondsPerMinute = 60;
constexpr double kSecondsPerDay = 86400;

// The whole part of a number that may be anything.
std::int64_t wholePart(double value) {
  if (std::isnan(value)) return 0;
  // The largest double below 2^63; the limit of the integer itself rounds up to 2^63.
  constexpr double kLargest = 9223372036854774784.0;
  return static_cast<std::int64_t>(std::clamp(value, -kLargest, kLargest));
}

}  // namespace

std::string Format::memory(std::uint64_t bytes) {
  const double megabytes = static_cast<double>(bytes) / kBinaryMegabyte;
  if (megabytes >= 1024) return fmt::format("{:.1f} GB", megabytes / 1024);
  return fmt::format("{:.0f} MB", megabytes);
}

std::string Format::memoryShort(std::uint64_t bytes) {
  const double gigabytes = static_cast<double>(bytes) / kBinaryGigabyte;
  if (gigabytes >= 0.1) return fmt::format("{:.1f} GB", gigabytes);
  const double megabytes = std::round(static_cast<double>(bytes) / kBinaryMegabyte);
  return fmt::format("{:.0f} MB", std::max(megabytes, 1.0));
}

std::string Format::disk(std::int64_t bytes) {
  const double gigabytes = static_cast<double>(bytes) / kDecimalGigabyte;
  if (gigabytes < 1) return fmt::format("{:.0f} MB", gigabytes * 1000);
  if (gigabytes < 10) return fmt::format("{:.1f} GB", gigabytes);
  return fmt::format("{:.0f} GB", gigabytes);
}

std::string Format::durationMinutes(std::int64_t minutes) {
  if (minutes < kHour) return fmt::format("{}m", minutes);
  if (minutes < 2 * kDay) return fmt::format("{}h {}m", minutes / kHour, minutes % kHour);
  return fmt::format("{}d {}h", minutes / kDay, minutes % kDay / kHour);
}

std::string Format::durationSeconds(double seconds) {
  if (seconds >= kSecondsPerMinute) return durationMinutes(wholePart(seconds / kSecondsPerMinute));
  return fmt::format("{}s", wholePart(seconds));
}

std::string Format::age(double seconds) {
  const std::int64_t minutes = wholePart(seconds / kSecondsPerMinute);
  if (minutes < 1) return "just now";
  if (minutes < kHour) return fmt::format("{} min", minutes);
  if (minutes < 2 * kHour) return "1 hour";
  if (minutes < 2 * kDay) return fmt::format("{} hours", minutes / kHour);
  return fmt::format("{} days", minutes / kDay);
}

std::string Format::shortAge(double seconds) {
  const std::int64_t minutes = wholePart(seconds / kSecondsPerMinute);
  if (minutes < kHour) return fmt::format("{}m", std::max<std::int64_t>(minutes, 1));
  if (minutes < 2 * kDay) return fmt::format("{}h", minutes / kHour);
  return fmt::format("{} days", minutes / kDay);
}

std::string Format::lastUsed(double seconds, bool added) {
  const std::string_view word = added ? "added" : "used";
  const std::int64_t days = wholePart(seconds / kSecondsPerDay);
  if (days < 1) return fmt::format("{} today", word);
  if (days == 1) return fmt::format("{} yesterday", word);
  if (days < 14) return fmt::format("{} {} days ago", word, days);
  if (days < 60) return fmt::format("{} {} weeks ago", word, days / 7);
  if (days < 365) return fmt::format("{} {} months ago", word, days / 30);
  return fmt::format("{} over a year ago", word);
}

std::string Format::shortName(std::string_view name) {
  // A shorter piece says too little alone: "js" of "node.js".
  constexpr std::size_t kShortestPiece = 4;
  if (name.find(' ') != std::string_view::npos) return std::string(name);
  if (name.find('.') == std::string_view::npos) return std::string(name);
  const std::string_view piece = Text::lastPiece(name, '.');
  return std::string(Text::characterCount(piece) < kShortestPiece ? name : piece);
}

std::string Format::ports(const std::vector<int>& ports) {
  if (ports.empty()) return "no port";
  if (ports.size() == 1) return fmt::format(":{}", ports.front());
  return fmt::format(":{} +{}", ports.front(), ports.size() - 1);
}

}  // namespace embrix
