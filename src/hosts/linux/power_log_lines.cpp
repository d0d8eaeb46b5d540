#include "hosts/linux/power_log_lines.h"

#include <time.h>

#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace embrix {

namespace {

enum class Event {
  operationBegins,  // the service manager starts to put the machine to sleep
  operationEnds,
  kernelSleeps,
  kernelWakes,
};

// "PM: suspend entry (deep)", "PM: suspend exit", "PM: hibernation: hibernation entry", and without
// the middle word on older kernels.
std::optional<Event> eventOf(const JournalEntry& entry) {
  if (entry.messageID == kSleepStartID) return Event::operationBegins;
  if (entry.messageID == kSleepStopID) return Event::operationEnds;
  std::string_view text = entry.message;
  if (!text.starts_with("PM: ")) return std::nullopt;
  text.remove_prefix(4);
  constexpr std::string_view kHibernation = "hibernation: ";
  if (text.starts_with(kHibernation)) text.remove_prefix(kHibernation.size());
  if (text.starts_with("suspend entry") || text.starts_with("hibernation entry")) {
    return Event::kernelSleeps;
  }
  if (text.starts_with("suspend exit") || text.starts_with("hibernation exit")) {
    return Event::kernelWakes;
  }
  return std::nullopt;
}

// The journal's message is any text; a tab or a line end would break the line's form.
std::string onOneLine(std::string_view message) {
  std::string line(message.substr(0, 200));
  for (char& character : line) {
    if (static_cast<unsigned char>(character) < ' ') character = ' ';
  }
  return line;
}

class Writer {
 public:
  void sleep(const JournalEntry& entry) {
    if (isAsleep_) return;
    isAsleep_ = true;
    write(entry, "Sleep",
          fmt::format("Entering Sleep state due to '{}'", onOneLine(entry.message)));
  }
  void wake(const JournalEntry& entry) {
    if (!isAsleep_) return;
    isAsleep_ = false;
    write(entry, "Wake", "Wake from Sleep");
  }
  void darkWake(const JournalEntry& entry, const JournalEntry& next) {
    if (!isAsleep_) return;
    isAsleep_ = false;
    const std::int64_t seconds = (next.microseconds - entry.microseconds) / 1'000'000;
    // A clock that was set back in between leaves the length unknown.
    write(
        entry, "DarkWake",
        seconds < 0 ? "DarkWake from Sleep" : fmt::format("DarkWake from Sleep {} secs", seconds));
  }
  std::string text() && { return std::move(text_); }

 private:
  void write(const JournalEntry& entry, std::string_view kind, std::string_view detail) {
    const auto seconds = static_cast<time_t>(entry.microseconds / 1'000'000);
    tm date{};
    // Beyond a year of four digits the line's form has no room.
    if (::gmtime_r(&seconds, &date) == nullptr || date.tm_year < 0 || date.tm_year > 8099) return;
    fmt::format_to(std::back_inserter(text_),
                   "{:04}-{:02}-{:02} {:02}:{:02}:{:02} +0000 {:<20}\t{}\n", date.tm_year + 1900,
                   date.tm_mon + 1, date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec, kind,
                   detail);
  }

  std::string text_;
  bool isAsleep_ = false;
};

}  // namespace

std::string powerLogLines(const std::vector<JournalEntry>& entries) {
  struct Dated {
    Event event;
    const JournalEntry* entry;
  };
  std::vector<Dated> events;
  for (const JournalEntry& entry : entries) {
    if (const auto event = eventOf(entry)) events.push_back({*event, &entry});
  }
  Writer writer;
  bool isInOperation = false;
  for (std::size_t i = 0; i < events.size(); ++i) {
    const JournalEntry& entry = *events[i].entry;
    switch (events[i].event) {
      case Event::operationBegins:
        isInOperation = true;
        writer.sleep(entry);
        break;
      case Event::kernelSleeps:
        writer.sleep(entry);
        break;
      case Event::kernelWakes:
        // Within one operation of the service manager the kernel can wake to hibernate.
        if (isInOperation && i + 1 < events.size() && events[i + 1].event == Event::kernelSleeps) {
          writer.darkWake(entry, *events[i + 1].entry);
        } else {
          writer.wake(entry);
        }
        break;
      case Event::operationEnds:
        isInOperation = false;
        writer.wake(entry);
        break;
    }
  }
  return std::move(writer).text();
}

}  // namespace embrix
