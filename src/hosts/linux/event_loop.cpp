#include "hosts/linux/event_loop.h"

#include <pthread.h>
#include <signal.h>

#include <utility>

#include "hosts/linux/loop_failure.h"

namespace embrix {

namespace {

constexpr int kEndingSignals[] = {SIGTERM, SIGINT, SIGHUP};

bool isIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

int endLoop(sd_event_source*, const signalfd_siginfo*, void* loop) {
  static_cast<LinuxEventLoop*>(loop)->quit();
  return 0;
}

}  // namespace

LinuxEventLoop::LinuxEventLoop() {
  sd_event* event = nullptr;
  requireForLoop(sd_event_new(&event));
  event_.reset(event);
  scheduler_ = std::make_unique<EventScheduler>(event);
  takeSignals();
}

void LinuxEventLoop::takeSignals() {
  ::sigemptyset(&taken_);
  for (const int signal : kEndingSignals) {
    // A signal that is blocked reaches the loop even though it is ignored.
    if (!isIgnored(signal)) ::sigaddset(&taken_, signal);
  }
  sigset_t before;
  ::pthread_sigmask(SIG_BLOCK, &taken_, &before);
  for (const int signal : kEndingSignals) {
    if (::sigismember(&taken_, signal) == 1) {
      const int added = sd_event_add_signal(event_.get(), nullptr, signal, endLoop, this);
      // A signal that is blocked and that nobody hears would leave a program that cannot be ended.
      if (added < 0) ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
      requireForLoop(added);
    }
    // Whoever blocked one before keeps it blocked after the loop's end.
    if (::sigismember(&before, signal) == 1) ::sigdelset(&taken_, signal);
  }
}

LinuxEventLoop::~LinuxEventLoop() {
  scheduler_.reset();
  event_.reset();
  // Those that came while the program was ending already are not to end it once more.
  const timespec none{};
  while (::sigtimedwait(&taken_, nullptr, &none) > 0) {
  }
  ::pthread_sigmask(SIG_UNBLOCK, &taken_, nullptr);
}

void LinuxEventLoop::run() {
  while (!isOver_) {
    if (sd_event_run(event_.get(), UINT64_MAX) < 0) isOver_ = true;
  }
  end();
}

bool LinuxEventLoop::prepare() {
  // What was asked for since it was prepared last is not in what it waits for yet.
  if (sd_event_get_state(event_.get()) == SD_EVENT_ARMED) sd_event_wait(event_.get(), 0);
  const int state = sd_event_get_state(event_.get());
  if (state != SD_EVENT_INITIAL) return state == SD_EVENT_PENDING;
  return sd_event_prepare(event_.get()) > 0;
}

void LinuxEventLoop::turn() {
  int state = sd_event_get_state(event_.get());
  if (state == SD_EVENT_INITIAL) state = prepare() ? SD_EVENT_PENDING : SD_EVENT_ARMED;
  if (state == SD_EVENT_ARMED && sd_event_wait(event_.get(), 0) <= 0) return;
  sd_event_dispatch(event_.get());
}

void LinuxEventLoop::end() {
  for (const auto& ending : std::exchange(endings_, {})) ending();
}

}  // namespace embrix
