// What one frame costs the main thread, on a machine of 300 groups of which 40 leave a trace in the
// history; beside it, averages and runaways as they would be had by walking the history.

#include <benchmark/benchmark.h>
#include <time.h>

#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "entry/app_settings.h"
#include "frame/process_sample.h"
#include "host/host.h"
#include "host/session.h"
#include "model/power_model.h"
#include "model/runaway_detector.h"

namespace embrix {
namespace {

constexpr int kGroups = 300;
constexpr int kTracedGroups = 40;
constexpr int kRowsPerGroup = 3;
constexpr double kInterval = 2;  // seconds
constexpr double kStart = 1'750'000'000;

// Nothing can be written there, yet every save is made ready for it.
const HistoryStore kNowhere{"/dev/null/Embrix"};

// Of this thread's own time, so that neighbours on the machine do not count.
double threadSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Everything that is asked for waits until it is let.
class SteppedScheduler final : public Scheduler {
 public:
  double now = kStart;

  double wallTime() override { return now; }
  double uptime() override { return now - kStart; }

  // Up to the frame that waits for the main thread.
  void sample() {
    now += kInterval;
    if (const auto timer = std::exchange(timer_, nullptr)) timer();
    std::vector<Work> works;
    works.swap(works_);
    for (Work& work : works) {
      work.work();
      done_.push_back(std::move(work.then));
    }
  }

  void finish() {
    std::vector<std::function<void()>> done;
    done.swap(done_);
    for (const auto& then : done) then();
  }

 private:
  struct Work {
    std::function<void()> work;
    std::function<void()> then;
  };

  void runAfter(double, std::function<void()> callback) override { timer_ = std::move(callback); }
  void runInBackground(WorkPriority, std::function<void()> work,
                       std::function<void()> then) override {
    works_.push_back({std::move(work), std::move(then)});
  }

  std::function<void()> timer_;
  std::vector<Work> works_;
  std::vector<std::function<void()>> done_;
};

class SteppedLoop final : public EventLoop {
 public:
  SteppedScheduler stepped;

  Scheduler& scheduler() override { return stepped; }
  void run() override {}
  void quit() override {}
};

class NoLog final : public Log {
 public:
  void error(std::string_view, std::string_view) override {}
};

Frame crowdedFrame() {
  Frame frame;
  std::int32_t pid = 100;
  for (int i = 0; i < kGroups; ++i) {
    AppGroup group;
    const std::string name = fmt::format("Application {}", i);
    group.identity = {.key = fmt::format("com.example.application-{}", i), .name = name};
    for (int each = 0; each < kRowsPerGroup; ++each) {
      ProcessRow row;
      row.pid = ++pid;
      row.id = processID(row.pid, 1'749'000'000);
      row.name = each == 0 ? name : name + " Helper";
      row.uid = 501;
      row.watts = i < kTracedGroups ? 4.0 / (i + 1) : 0.001;
      row.cpuPercent = row.watts;
      group.watts += row.watts;
      group.cpuPercent += row.cpuPercent;
      group.processes.push_back(row);
    }
    frame.groups.push_back(std::move(group));
  }
  frame.battery = BatteryReading{.systemWatts = 40, .percent = 80, .remainingWh = 50};
  frame.temperature = 60;
  return frame;
}

// A model that is fed with ever the same machine, whose watts waver.
class FedModel {
 public:
  FedModel() {
    AppSettings::registerInto(defaults_);
    auto ports = PowerModelPorts::of(host_, session_, defaults_, log_, kNowhere);
    ports.frames = [this](Frame) {
      Frame next = frame_;
      next.date = loop_->stepped.now;
      for (AppGroup& group : next.groups) group.watts *= 1 + 0.01 * std::sin(next.date);
      return std::optional(std::move(next));
    };
    model_ = std::make_unique<PowerModel>(std::move(ports));
    model_->start();
  }

  void sample() { loop_->stepped.sample(); }
  void finish() { loop_->stepped.finish(); }
  PowerModel& model() { return *model_; }

 private:
  Frame frame_ = crowdedFrame();
  Host host_ = absentHost();
  SteppedLoop* loop_ = new SteppedLoop;  // the session's
  Session session_ = absentSession(std::unique_ptr<EventLoop>(loop_));
  Settings defaults_{nullptr};
  NoLog log_;
  std::unique_ptr<PowerModel> model_;
};

void applyFrame(benchmark::State& state) {
  FedModel fed;
  for (long i = 0; i < state.range(0); ++i) {
    fed.sample();
    fed.finish();
  }
  for (auto _ : state) {
    fed.sample();
    const double start = threadSeconds();
    fed.finish();
    state.SetIterationTime(threadSeconds() - start);
  }
  state.counters["points"] = static_cast<double>(fed.model().history()->points().size());
}
// So few that a history of 100 points is still a short one at the end.
BENCHMARK(applyFrame)
    ->Arg(100)
    ->Arg(1800)
    ->Iterations(200)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// The two steps of it that look back, done by walking.
void walkHistory(benchmark::State& state) {
  FedModel fed;
  for (long i = 0; i < state.range(0); ++i) {
    fed.sample();
    fed.finish();
  }
  const History& history = *fed.model().history();
  const Frame& frame = **fed.model().frame();
  for (auto _ : state) {
    for (std::size_t i = 0; i < 50; ++i) {
      benchmark::DoNotOptimize(history.average(frame.groups[i].identity.key, 600, frame.date));
    }
    benchmark::DoNotOptimize(RunawayDetector::runaways(history, frame.date, 3, 300));
  }
}
BENCHMARK(walkHistory)->Arg(100)->Arg(1800)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace embrix
