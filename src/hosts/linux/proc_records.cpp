#include "hosts/linux/proc_records.h"

#include "hosts/linux/number_scan.h"

namespace embrix {

namespace {

// The rest of the first line that begins with the label.
std::optional<std::string_view> behindLabel(std::string_view text, std::string_view label) {
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view line = text.substr(start, end - start);
    if (line.starts_with(label)) return line.substr(label.size());
    start = end + 1;
  }
  return std::nullopt;
}

}  // namespace

std::optional<ProcStat> parseProcStat(std::string_view text) {
  ProcStat stat;
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
    return std::nullopt;
  }
  if (!NumberScan(text.substr(0, open)).next(stat.pid)) return std::nullopt;
  stat.commandName = text.substr(open + 1, close - open - 1);
  if (close + 2 >= text.size()) return std::nullopt;
  stat.state = text[close + 2];

  // Fields are numbered as in proc(5); the state is field 3.
  NumberScan scan(text.substr(close + 3));
  const bool isWhole = scan.next(stat.ppid) &&                                   // 4
                       scan.skip(9) &&                                           // 5 to 13
                       scan.next(stat.userTicks) && scan.next(stat.systemTicks)  // 14, 15
                       && scan.skip(4) &&                                        // 16 to 19
                       scan.next(stat.threads) &&                                // 20
                       scan.skip(1) &&                                           // 21
                       scan.next(stat.startTicks) &&                             // 22
                       scan.skip(1);                                             // 23
  std::int64_t residentPages = 0;
  if (!isWhole || !scan.next(residentPages)) return std::nullopt;  // 24
  stat.residentPages = residentPages < 0 ? 0 : static_cast<std::uint64_t>(residentPages);
  return stat;
}

std::optional<SchedStat> parseSchedStat(std::string_view text) {
  SchedStat stat;
  NumberScan scan(text);
  if (!scan.next(stat.runNS) || !scan.skip(1) || !scan.next(stat.timeSlices)) return std::nullopt;
  return stat;
}

std::optional<std::uint32_t> parseEffectiveUser(std::string_view text) {
  const auto line = behindLabel(text, "Uid:");
  if (!line) return std::nullopt;
  NumberScan scan(*line);
  std::uint32_t real = 0;
  std::uint32_t effective = 0;
  if (!scan.next(real) || !scan.next(effective)) return std::nullopt;
  return effective;
}

std::optional<std::uint64_t> parseBootTime(std::string_view text) {
  const auto line = behindLabel(text, "btime");
  std::uint64_t seconds = 0;
  if (!line || !NumberScan(*line).next(seconds)) return std::nullopt;
  return seconds;
}

std::optional<std::uint64_t> parseBusyTicks(std::string_view text) {
  const auto line = behindLabel(text, "cpu ");
  if (!line) return std::nullopt;
  NumberScan scan(*line);
  // user nice system idle iowait irq softirq
  std::uint64_t fields[7] = {};
  for (std::uint64_t& field : fields) {
    if (!scan.next(field)) return std::nullopt;
  }
  return fields[0] + fields[1] + fields[2] + fields[5] + fields[6];
}

}  // namespace embrix
