// Any bytes as a recording: refused in one line, or replayed to its end. A tick that can be read
// can be written, and is then read as the same tick.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "hosts/replay/recording_format.h"
#include "hosts/replay/replay_host.h"

namespace {

using namespace embrix;

void checkTick(std::string_view line) {
  const auto read = decodeTick(line);
  const auto* tick = std::get_if<RecordedTick>(&read);
  if (tick == nullptr) return;
  const std::string written = encodeTick(*tick);
  const auto again = decodeTick(written);
  // By their lines: a number that is none equals nothing.
  if (encodeTick(std::get<RecordedTick>(again)) != written) std::abort();
}

void askEverything(Host& host) {
  host.clock->beginTick();
  host.clock->uptime();
  host.clock->wallTime();
  std::vector<RawProcess> table;
  host.processes->read(table);
  for (const RawProcess& process : table) {
    if (process.pid < 0) std::abort();
    host.processes->executablePath(process.pid);
    host.processDetails->listening(process.pid);
    host.responsibility->responsiblePID(process.pid);
  }
  host.energy->sample();
  host.energy->interval();
  host.battery->registry();
  host.temperatures->read(0);
  host.gpu->clients();
  host.memory->counters();
  host.assertions->read();
  host.powerLog->read();
}

void checkRecording(std::string bytes) {
  constexpr std::uint64_t kEnough = 1000;
  auto result = openReplayOfBytes(std::move(bytes), "fuzz");
  if (const auto* problem = std::get_if<RecordingProblem>(&result)) {
    if (problem->text.empty() || problem->text.find('\n') != std::string::npos) std::abort();
    return;
  }
  auto& replay = std::get<Replay>(result);
  if (replay.ticks == 0 || replay.finished()) std::abort();
  for (std::uint64_t i = 0; i < replay.ticks && i < kEnough; ++i) askEverything(replay.host);
  if (replay.ticks <= kEnough && !replay.finished()) std::abort();
  askEverything(replay.host);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string header = encodeHeader({.hostName = "macos"}) + "\n";
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  checkTick(bytes);
  checkRecording(bytes);
  checkRecording(header + bytes);
  return 0;
}
