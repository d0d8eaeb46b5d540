#include "records/overnight_log.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "base/hash_map.h"
#include "base/text.h"
#include "records/log_date.h"
#include "running/friendly_name.h"

namespace embrix {

namespace {

// A sleep shorter than this is a nap and no night, in seconds.
constexpr double kShortestNight = 1800;

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kNumerals = "0123456789";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// What stands behind the first `marker`; absent without one.
std::optional<std::string_view> textBehind(std::string_view marker, std::string_view text) {
  const auto place = text.find(marker);
  if (place == std::string_view::npos) return std::nullopt;
  return text.substr(place + marker.size());
}

// What stands behind the date and the one character after it; empty when there is no more. That
// character can be of several bytes, or have a mark of its own, or be none at all: a mark that
// belongs to the last digit of the date, which then is no digit.
std::string_view textBehindDate(std::string_view line) {
  const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
  const std::string_view rest = line.substr(kLogDateLength);
  if (rest.size() < 2) return {};
  if (isPlain(rest[0]) && isPlain(rest[1])) return rest.substr(1);
  if (Text::withoutFirstCharacters(line, kLogDateLength).size() != rest.size()) return {};
  return Text::withoutFirstCharacters(rest, 1);
}

// Calls `use` with each line that is not empty, without its end.
template <typename Use>
void forEachLine(std::string_view text, Use use) {
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) use(line);
  }
}

// What the lines since the last full wake come to. The sleep is the first of its kind among them
// (dark wakes end with Sleep lines of their own), and its date decides which of the others count,
// also of those before it: lines of one second stand in no order.
struct Stretch {
  std::optional<OvernightLog::Line> sleep;
  std::vector<OvernightLog::Line> darkWakes;
  std::vector<OvernightLog::Line> wakeRequests;
  double newestOnPower = -std::numeric_limits<double>::infinity();

  void add(const OvernightLog::Line& line) {
    if (line.detail.find("Using AC") != std::string_view::npos) {
      newestOnPower = std::max(newestOnPower, line.date);
    }
    if (line.kind == "Sleep" && !sleep) sleep = line;
    if (line.kind == "DarkWake") darkWakes.push_back(line);
    if (line.kind == "Wake Requests") wakeRequests.push_back(line);
  }
};

// Counts names; equal counts come in the order in which the names were first added.
class NameCounter {
 public:
  void add(const SharedText& name) {
    const auto [place, isNew] = places_.try_emplace(name, tallies_.size());
    if (isNew) tallies_.push_back({.name = name.string(), .count = 0});
    tallies_[place->second].count += 1;
  }

  std::vector<Overnight::Tally> mostFrequentFirst() && {
    std::stable_sort(tallies_.begin(), tallies_.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    return std::move(tallies_);
  }

 private:
  HashMap<SharedText, std::size_t> places_;
  std::vector<Overnight::Tally> tallies_;
};

// A decimal number such as "45" or "1.5". Absent for anything else: a sign, an exponent, and ten
// digits before the point, which would be centuries.
std::optional<double> decimalNumber(std::string_view text) {
  const std::size_t wholeLength = std::min(text.find_first_not_of(kNumerals), text.size());
  std::string_view fraction = text.substr(wholeLength);
  if (fraction.starts_with('.')) fraction.remove_prefix(1);
  const bool isNumber = fraction.find_first_not_of(kNumerals) == std::string_view::npos &&
                        wholeLength + fraction.size() > 0 && wholeLength < 10;
  if (!isNumber) return std::nullopt;
  // Both stay exact, so the quotient is the double nearest to the text, to the microsecond.
  double digits = 0;
  double unit = 1;
  for (const char c : text.substr(0, wholeLength)) digits = digits * 10 + (c - '0');
  for (const char c : fraction.substr(0, 6)) {
    digits = digits * 10 + (c - '0');
    unit *= 10;
  }
  return digits / unit;
}

// How long a dark wake lasted, from the "45 secs" at the end of its line. Many a line has none.
std::optional<double> secondsAtEnd(std::string_view detail) {
  detail = trimmed(detail);
  const auto lastBlank = detail.rfind(' ');
  if (lastBlank == std::string_view::npos) return std::nullopt;
  if (!detail.substr(lastBlank + 1).starts_with("sec")) return std::nullopt;
  const std::string_view before = detail.substr(0, detail.find_last_not_of(' ', lastBlank) + 1);
  return decimalNumber(before.substr(before.rfind(' ') + 1));
}

// The percentage in "(Charge:84%)". Absent without numerals right behind the colon, and above 100.
std::optional<int> charge(std::string_view detail) {
  const auto behind = textBehind("Charge:", detail);
  if (!behind) return std::nullopt;
  const std::string_view digits = behind->substr(0, behind->find_first_not_of(kNumerals));
  if (digits.empty()) return std::nullopt;
  int percent = 0;
  for (const char c : digits) {
    percent = percent * 10 + (c - '0');
    if (percent > 100) return std::nullopt;
  }
  return percent;
}

// `needle` is of lower-case ASCII letters, which lower-casing makes of no others that matter here.
bool containsIgnoringCase(std::string_view text, std::string_view needle) {
  const auto found =
      std::search(text.begin(), text.end(), needle.begin(), needle.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
      });
  return found != text.end();
}

std::optional<Overnight> story(const Stretch& stretch, const OvernightLog::Line& wake) {
  if (!stretch.sleep || wake.date - stretch.sleep->date < kShortestNight) return std::nullopt;
  const double sleptAt = stretch.sleep->date;
  Overnight night;
  night.sleptAt = sleptAt;
  night.wokeAt = wake.date;
  NameCounter causes;
  for (const auto& darkWake : stretch.darkWakes) {
    if (darkWake.date < sleptAt) continue;
    night.darkWakes += 1;
    night.awakeSeconds += secondsAtEnd(darkWake.detail).value_or(0);
    causes.add(OvernightLog::cause(darkWake.detail));
  }
  NameCounter requesters;
  for (const auto& request : stretch.wakeRequests) {
    if (request.date < sleptAt) continue;
    if (const auto name = OvernightLog::starredRequester(request.detail)) requesters.add(*name);
  }
  night.chargeAtSleep = charge(stretch.sleep->detail);
  night.chargeAtWake = charge(wake.detail);
  night.onPower =
      stretch.newestOnPower >= sleptAt || wake.detail.find("Using AC") != std::string_view::npos;
  night.causes = std::move(causes).mostFrequentFirst();
  night.requesters = std::move(requesters).mostFrequentFirst();
  return night;
}

}  // namespace

std::optional<Overnight> OvernightLog::parse(std::string_view text) {
  Stretch current;
  Stretch beforeWake;
  std::optional<Line> wake;
  forEachLine(text, [&](std::string_view raw) {
    const auto parsed = line(raw);
    if (!parsed) return;
    if (parsed->kind == "Wake") {
      wake = parsed;
      beforeWake = std::exchange(current, {});
    } else {
      current.add(*parsed);
    }
  });
  return wake ? story(beforeWake, *wake) : std::nullopt;
}

std::optional<OvernightLog::Line> OvernightLog::line(std::string_view line) {
  const auto date = logDateAtStart(line);
  if (!date) return std::nullopt;
  const std::string_view rest = textBehindDate(line);
  if (rest.empty()) return std::nullopt;
  const auto tab = rest.find('\t');
  return Line{.date = *date,
              .kind = trimmed(rest.substr(0, tab)),
              .detail = tab == std::string_view::npos ? std::string_view() : rest.substr(tab + 1)};
}

std::string_view OvernightLog::cause(std::string_view detail) {
  struct Rule {
    std::array<std::string_view, 4> words;
    std::string_view cause;
  };
  static constexpr std::array<Rule, 5> kRules = {{
      {{"wifibt", "wifi", "arpt", "bluetooth"}, "Wi-Fi or Bluetooth"},
      {{"rtc", "alarm", "maintenance"}, "Scheduled maintenance"},
      {{"usb"}, "A USB accessory"},
      {{"acattach", " ac ", "powersource"}, "The power adapter"},
      {{"hid", "lid", "useractivity"}, "You"},
  }};
  const std::string_view reason = textBehind("due to ", detail).value_or(detail);
  for (const Rule& rule : kRules) {
    for (const std::string_view word : rule.words) {
      if (!word.empty() && containsIgnoringCase(reason, word)) return rule.cause;
    }
  }
  return "The system";
}

std::optional<std::string> OvernightLog::starredRequester(std::string_view detail) {
  const auto behindStar = textBehind("[*process=", detail);
  if (!behindStar) return std::nullopt;
  const std::string_view process = behindStar->substr(0, behindStar->find_first_of(" ]"));
  const auto behindInfo = textBehind("info=\"", behindStar->substr(process.size()));
  const std::string_view info = behindInfo ? behindInfo->substr(0, behindInfo->find('"')) : "";
  const auto infoHas = [&](std::string_view word) {
    return info.find(word) != std::string_view::npos;
  };
  if (infoHas("searchd") || infoHas("spotlight")) return "Spotlight";
  if (infoHas("backupd") || process == "backupd") return "Time Machine";
  if (process == "mDNSResponder") return "Network (mDNSResponder)";
  if (process == "powerd") return "macOS power management";
  if (process == "dasd") return "Background tasks";
  return FriendlyName::name(Text::repaired(process)).string();
}

}  // namespace embrix
