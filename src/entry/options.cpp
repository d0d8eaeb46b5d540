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
    {option::kBackground, "", "run without a window until told to end, keeping the records"},
    {option::kWatch, "", "the same, printing each sample as one line of JSON"},
    {option::kRecords, "<folder>", "with either: keep the records in that folder"},
    {option::kDashboard, "<page>", "open the dashboard on that page"},
    {option::kSnapshot, "<folder>", "write pictures of the windows there, of demo data, and end"},
    {option::kIcon, "<path>", "write the application's icon there as a PNG, and end"},
    {option::kThrottle, "", "report the thermal state as serious"},
    {option::kRecord, "<path>", "with any of these: also write down what the machine told"},
    {option::kReplay, "<path>", "read such a recording in place of this machine"},
    {option::kUITesting, "", "demo data, settings that start empty, no motion"},
    {option::kLive, "", "with --ui-testing: this machine in place of demo data"},
    {option::kSet, "<key>=<value>", "with --ui-testing: set a setting; may repeat"},
    {option::kHelp, "", "print this, and end"},
    {option::kVersion, "", "print the version, and end"},
};

constexpr std::string_view kAbout =
    "Embrix tells what is heating this machine: the watts of every app, from one sample of two "
    "seconds,\nor for as long as it runs.\n\nOptions:\n";

constexpr std::string_view kNotes =
    "\nA line of --watch is one JSON object: alerts (identifiers of the notifications sent), "
    "calmed "
    "(pids that\nare slowed down), loadLevel (calm, warm or hot), runaways (keys of apps), time "
    "(seconds since 1970),\ntotalWatts, verdict. With no window open a sample is taken every 10 "
    "seconds; with --watch, as often as\nthe setting sampleInterval says. A replayed recording "
    "keeps "
    "no records unless --records names a folder.\n"
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
  text += kNotes;
  return text;
}

}  // namespace embrix
