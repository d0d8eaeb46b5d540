#include "hosts/macos/event_loop.h"

#import <AppKit/AppKit.h>

#include <pthread.h>
#include <signal.h>

#include <utility>

namespace embrix {

namespace {

constexpr int kEndingSignals[] = {SIGTERM, SIGINT, SIGHUP};

bool isIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

MacEventLoop::MacEventLoop() {
  takeSignals();
  scheduler_ = std::make_unique<MainQueueScheduler>();
}

MacEventLoop::~MacEventLoop() {
  signals_.clear();
  scheduler_.reset();
}

// The kernel tells the queue of a signal that is blocked, too. They stay blocked after the end, or
// one that came meanwhile would end the program in the middle of it.
void MacEventLoop::takeSignals() {
  sigemptyset(&taken_);
  for (const int signal : kEndingSignals) {
    if (!isIgnored(signal)) sigaddset(&taken_, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &taken_, nullptr);
  for (const int signal : kEndingSignals) {
    if (sigismember(&taken_, signal) != 1) continue;
    signals_.push_back(std::make_unique<MainQueueSource>(MainQueueSource::Kind::signal, signal,
                                                         [this] { isToldToEnd(); }));
  }
}

void MacEventLoop::isToldToEnd() {
  if (!isRunning_ && NSApp != nil) {
    [NSApp terminate:nil];
  } else {
    quit();
  }
}

void MacEventLoop::run() {
  isRunning_ = true;
  while (!isOver_) {
    @autoreleasepool {
      CFRunLoopRun();
    }
  }
  isRunning_ = false;
  end();
}

void MacEventLoop::quit() {
  isOver_ = true;
  CFRunLoopStop(CFRunLoopGetMain());
}

void MacEventLoop::end() {
  for (const auto& ending : std::exchange(endings_, {})) ending();
}

}  // namespace embrix
