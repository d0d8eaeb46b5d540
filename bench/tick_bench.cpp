// A whole tick, from the process table to the finished frame, over crowds of idle processes, with
// the allocations that it makes.

#include <benchmark/benchmark.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "host/host.h"
#include "host/native_host.h"
#include "hosts/linux/process_source.h"
#include "sampling/process_reader.h"
#include "sampling/sampler.h"

namespace {
std::atomic<std::size_t> allocations{0};
}  // namespace

// GCC takes the pair below for a mismatch once it has inlined one of them.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace embrix {
namespace {

// So many children that sleep until they are killed.
class Crowd {
 public:
  explicit Crowd(long count) {
    for (long i = 0; i < count; ++i) {
      const pid_t child = ::fork();
      if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (true) ::pause();
      }
      children_.push_back(child);
    }
    ::usleep(200'000);  // the children come to rest
  }
  Crowd(const Crowd&) = delete;
  Crowd& operator=(const Crowd&) = delete;
  ~Crowd() {
    for (const pid_t child : children_) ::kill(child, SIGKILL);
    for (const pid_t child : children_) ::waitpid(child, nullptr, 0);
  }

 private:
  std::vector<pid_t> children_;
};

void report(benchmark::State& state, std::size_t processes, std::size_t allocated) {
  state.counters["processes"] = static_cast<double>(processes);
  state.counters["per_process"] = benchmark::Counter(
      static_cast<double>(processes),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["allocations"] =
      static_cast<double>(allocated) / static_cast<double>(state.iterations());
}

void processTable(benchmark::State& state) {
  const Crowd crowd(state.range(0));
  LinuxProcessSource source;
  ProcessReader reader(source);
  for (int warm = 0; warm < 3; ++warm) reader.read();
  const std::size_t before = allocations;
  std::size_t processes = 0;
  for (auto _ : state) processes = reader.read().size();
  report(state, processes, allocations - before);
}
BENCHMARK(processTable)->Arg(300)->Arg(1000)->Arg(3000)->Unit(benchmark::kMicrosecond);

void wholeTick(benchmark::State& state) {
  const Crowd crowd(state.range(0));
  Host host = nativeHost();
  Sampler sampler(host);
  std::optional<Frame> shown;
  const auto tick = [&] {
    std::optional<Frame> frame = sampler.next();
    if (shown) sampler.recycle(std::move(*shown));
    shown = std::move(frame);
  };
  for (int warm = 0; warm < 4; ++warm) tick();
  const std::size_t before = allocations;
  for (auto _ : state) tick();
  std::size_t processes = 0;
  for (const AppGroup& group : shown->groups) processes += group.processes.size();
  report(state, processes, allocations - before);
}
BENCHMARK(wholeTick)->Arg(300)->Arg(1000)->Arg(3000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace embrix
