// The options of the command line. Each counts only as an exact whole argument, wherever it stands;
// whatever is no option is passed over.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

namespace option {
inline constexpr std::string_view kDump = "--dump";
inline constexpr std::string_view kJSON = "--json";
inline constexpr std::string_view kCleanup = "--cleanup";
inline constexpr std::string_view kDashboard = "--dashboard";
inline constexpr std::string_view kSnapshot = "--snapshot";
inline constexpr std::string_view kIcon = "--icon";
inline constexpr std::string_view kThrottle = "--throttle";
inline constexpr std::string_view kBackground = "--background";
inline constexpr std::string_view kWatch = "--watch";
inline constexpr std::string_view kRecords = "--records";
inline constexpr std::string_view kRecord = "--record";
inline constexpr std::string_view kReplay = "--replay";
inline constexpr std::string_view kUITesting = "--ui-testing";
inline constexpr std::string_view kLive = "--live";
inline constexpr std::string_view kSet = "--set";
inline constexpr std::string_view kHelp = "--help";
inline constexpr std::string_view kVersion = "--version";
}  // namespace option

bool hasOption(const std::vector<std::string>& arguments, std::string_view option);

// The argument behind the option's first occurrence, as it stands, even if it looks like an option
// itself. Absent when the option is missing or is the last argument.
std::optional<std::string> optionValue(const std::vector<std::string>& arguments,
                                       std::string_view option);

// What --help prints: every option on one line, and how far the figures can be trusted.
std::string helpText();

}  // namespace embrix
