// How long the popover takes to be seen, and what a frame of it costs while something moves, in a
// process of its own with the toolkit as the program has it. Prints one line a figure.
//
// usage: surface_times [SECONDS]

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <optional>
#include <utility>

#include <QApplication>
#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>

#include "entry/app_settings.h"
#include "entry/fixture.h"
#include "host/native_host.h"
#include "model/power_model.h"
#include "surfaces/qt/popover_window.h"

namespace {

using namespace embrix;

double secondsOf(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double now() {
  return secondsOf(CLOCK_BOOTTIME);
}

// Since the kernel made this process, as far as it tells: hundredths.
double sinceTheProcessBegan() {
  std::FILE* stat = std::fopen("/proc/self/stat", "r");
  if (stat == nullptr) return 0;
  unsigned long long ticks = 0;
  const int read = std::fscanf(
      stat,
      "%*d %*s %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %*u %*u %*d %*d %*d %*d %*d %*d %llu",
      &ticks);
  std::fclose(stat);
  return read == 1 ? now() - static_cast<double>(ticks) / 100 : 0;
}

void turnUntil(const std::function<void(QEventLoop&)>& arrange) {
  QEventLoop loop;
  arrange(loop);
  loop.exec();
}

void untilTheFirstFrame(PopoverWindow& popover) {
  turnUntil([&](QEventLoop& loop) {
    QObject::connect(&popover.window(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    popover.open(std::nullopt);
  });
}

struct Span {
  double seconds = 0;
  double busy = 0;  // seconds in all threads
  int frames = 0;
};

Span watch(PopoverWindow& popover, double seconds) {
  Span span;
  const auto counting =
      QObject::connect(&popover.window(), &QQuickWindow::frameSwapped, [&span] { ++span.frames; });
  const double start = now();
  const double busy = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
  turnUntil([&](QEventLoop& loop) {
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
  });
  span.seconds = now() - start;
  span.busy = secondsOf(CLOCK_PROCESS_CPUTIME_ID) - busy;
  QObject::disconnect(counting);
  return span;
}

void tell(const char* what, const Span& span) {
  std::printf("%-34s %6.1f frames/s %8.2f ms a frame %7.2f %% of a core\n", what,
              span.frames / span.seconds, span.frames > 0 ? span.busy * 1000 / span.frames : 0.0,
              span.busy / span.seconds * 100);
}

}  // namespace

int main(int count, char** arguments) {
  const double seconds = count > 1 ? std::atof(arguments[1]) : 10;
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QApplication application(count, arguments);
  QGuiApplication::setQuitOnLastWindowClosed(false);

  Host host = absentHost();
  Session session = nativeSession();
  Scheduler& scheduler = session.loop->scheduler();
  Settings settings(nullptr);
  AppSettings::registerInto(settings);
  const auto log = nativeLog();
  PowerModel model(PowerModelPorts::of(host, session, settings, *log, HistoryStore({})));
  Fixture::load(model, scheduler.wallTime());
  SurfaceEngine engine;
  PopoverWindow popover(engine, model, scheduler, {}, PopoverWindow::Form::window);

  untilTheFirstFrame(popover);
  std::printf("%-34s %6.0f ms\n", "from launch to the first frame", sinceTheProcessBegan() * 1000);
  watch(popover, 3);  // the rows come in

  tell("a warm mascot", watch(popover, seconds));
  settings.set("warmWatts", 60.0);
  settings.set("hotWatts", 90.0);
  popover.close();
  untilTheFirstFrame(popover);
  watch(popover, 3);
  tell("a calm mascot", watch(popover, seconds));

  engine.values().motion().setReduced(true);
  tell("with reduced motion", watch(popover, seconds));
  engine.values().motion().setReduced(false);

  popover.close();
  watch(popover, 1);
  tell("closed", watch(popover, seconds));

  const double click = now();
  untilTheFirstFrame(popover);
  std::printf("%-34s %6.0f ms\n", "from click to the first frame", (now() - click) * 1000);
  return 0;
}
