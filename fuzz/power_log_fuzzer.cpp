// Any bytes as a power log.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "records/overnight_log.h"
#include "records/power_log.h"

namespace {

struct Log final : embrix::PowerLogSource {
  std::string read() override { return text; }
  std::string text;
};

void require(bool holds) {
  if (!holds) std::abort();
}

// What holds of every night, whatever the log.
void check(const embrix::Overnight& night) {
  require(night.wokeAt - night.sleptAt >= 1800);
  require(night.awakeSeconds >= 0 && night.awakeSeconds < 1e18);
  int counted = 0;
  for (const auto& cause : night.causes) counted += cause.count;
  require(counted == night.darkWakes);
  for (const auto charge : {night.chargeAtSleep, night.chargeAtWake}) {
    require(!charge || (*charge >= 0 && *charge <= 100));
  }
  for (std::size_t i = 1; i < night.requesters.size(); ++i) {
    require(night.requesters[i - 1].count >= night.requesters[i].count);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto night = embrix::OvernightLog::parse(bytes)) check(*night);

  // Most bytes have no date, and those that have one are hard to come by: the same again as the
  // rows of a night, each line of the input behind a date.
  std::string rows = "2026-03-02 23:00:00 +0100 Sleep\tUsing AC (Charge:1%)\n";
  for (std::size_t start = 0; start < bytes.size();) {
    const std::string_view line = bytes.substr(start, bytes.find('\n', start) - start);
    rows.append("2026-03-03 01:00:00 +0100 ").append(line).append("\n");
    start += line.size() + 1;
  }
  rows += "2026-03-03 07:00:00 +0100 Wake\t";
  rows += bytes.substr(0, bytes.find('\n'));
  if (const auto night = embrix::OvernightLog::parse(rows)) check(*night);

  Log source;
  source.text = rows;
  const std::string read = embrix::PowerLog::read(source);
  require(read.size() <= 4 * embrix::PowerLog::kLongestLog);
  if (const auto night = embrix::OvernightLog::parse(read)) check(*night);
  return 0;
}
