#include "entry/options.h"

#include <algorithm>

#include <fmt/format.h>

namespace embrix {

namespace {

struct Described {
  std::string_view option;
  std::string_view value;
  std::string_view effect;
};

constexpr Described kDescribed[] = {
    {option::kDump, "", "print a sample of this machine as text, and end"},
    {option::kJSON, "", "print a sample of this machine as JSON, and end"},
    {option::kCleanup, "", "with either: print what a cleanup would find in its place"},
    {option::kThrottle, "", "report the thermal state as serious"},
    {option::kRecord, "<path>", "with either: also write down what the machine told"},
    {option::kReplay, "<path>", "read such a recording in place of this machine"},
    {option::kUITesting, "", "keep settings in a store that starts empty"},
    {option::kLive, "", "with --ui-testing: this machine in place of demo data"},
    {option::kSet, "<key>=<value>", "with --ui-testing: set a setting; may repeat"},
    {option::kHelp, "", "print this, and end"},
    {option::kVersion, "", "print the version, and end"},
};

constexpr std::string_view kAbout =
    "Embrix tells what is heating this machine: the watts of every app, from one sample of two "
    "seconds.\n\nOptions:\n";

constexpr std::string_view kHonesty =
    "\nThe watts of an app are the kernel's own count on macOS. Linux keeps no such count: there "
    "they are\nan estimate, CPU time times the watts of one busy core, which are measured where "
    "the processor's\nenergy counter can be read and assumed to be 4 W where it cannot.\n";

}  // namespace

bool hasOption(const std::vector<std::string>& arguments, std::string_view option) {
  return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}

std::optional<std::string> optionValue(const std::vector<std::string>& arguments,
                                       std::string_view option) {
  const auto found = std::find(arguments.begin(), arguments.end(), option);
  if (found == arguments.end() || found + 1 == arguments.end()) return std::nullopt;
  return *(found + 1);
}

std::string helpText() {
  std::string text(kAbout);
  for (const Described& described : kDescribed) {
    const std::string left = described.value.empty()
                                 ? std::string(described.option)
                                 : fmt::format("{} {}", described.option, described.value);
    text += fmt::format("  {:<20}  {}\n", left, described.effect);
  }
  text += kHonesty;
  return text;
}

}  // namespace embrix
