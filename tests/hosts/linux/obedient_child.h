// A child process that does what the test tells it to: starts threads, starts children, and waits.
// It does not outlive the object.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <thread>

namespace embrix {

class ObedientChild {
 public:
  ObedientChild() {
    if (::pipe(orders_.data()) != 0 || ::pipe(answers_.data()) != 0) {
      throw std::runtime_error("no pipe");
    }
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("no child");
    if (pid_ == 0) obey();
    ::close(orders_[0]);
    ::close(answers_[1]);
  }
  ~ObedientChild() {
    ::close(orders_[1]);
    ::close(answers_[0]);
    ::kill(pid_, SIGKILL);
    wait();
  }
  ObedientChild(const ObedientChild&) = delete;
  ObedientChild& operator=(const ObedientChild&) = delete;

  pid_t pid() const { return pid_; }

  void startThread() { order('t'); }
  // One that runs on the first CPU that the child may run on, and says so itself.
  void startBoundThread() { order('b'); }
  // A child of its own. It ends when this object does.
  pid_t startChild() { return order('c'); }
  // A child whose parent has ended by the time this returns.
  pid_t startOrphan() { return order('o'); }

  // As waitpid() tells it.
  int wait() {
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
  }

 private:
  pid_t order(char what) {
    pid_t answer = 0;
    if (::write(orders_[1], &what, 1) != 1 ||
        ::read(answers_[0], &answer, sizeof answer) != sizeof answer) {
      throw std::runtime_error("the child does not answer");
    }
    return answer;
  }

  void answer(pid_t pid) {
    if (::write(answers_[1], &pid, sizeof pid) != sizeof pid) ::_exit(1);
  }

  static void stayHere(int readyEnd) {
    const char ready = 1;
    if (::write(readyEnd, &ready, 1) != 1) ::_exit(1);
    while (true) ::pause();
  }

  void startThreadHere(bool isBound) {
    std::array<int, 2> ready{};
    if (::pipe(ready.data()) != 0) ::_exit(1);
    std::thread([end = ready[1], isBound] {
      if (isBound) {
        cpu_set_t allowed;
        ::sched_getaffinity(0, sizeof allowed, &allowed);
        int first = 0;
        while (!CPU_ISSET(first, &allowed)) ++first;
        cpu_set_t bound;
        CPU_ZERO(&bound);
        CPU_SET(first, &bound);
        ::sched_setaffinity(0, sizeof bound, &bound);
      }
      stayHere(end);
    }).detach();
    char byte = 0;
    if (::read(ready[0], &byte, 1) != 1) ::_exit(1);
  }

  pid_t startChildHere() {
    const pid_t pid = ::fork();
    if (pid == 0) {
      ::close(answers_[1]);
      // The end of the orders is the end of the test.
      pollfd end = {orders_[0], 0, 0};
      while (::poll(&end, 1, -1) < 0) {
      }
      ::_exit(0);
    }
    return pid;
  }

  [[noreturn]] void obey() {
    ::close(orders_[1]);
    ::close(answers_[0]);
    // Whatever the test's own program does with signals, this one ends by them.
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    char what = 0;
    while (::read(orders_[0], &what, 1) == 1) {
      switch (what) {
        case 't':
          startThreadHere(false);
          answer(0);
          break;
        case 'b':
          startThreadHere(true);
          answer(0);
          break;
        case 'c':
          answer(startChildHere());
          break;
        default:
          answer(startOrphanHere());
      }
    }
    ::_exit(0);
  }

  pid_t startOrphanHere() {
    std::array<int, 2> told{};
    if (::pipe(told.data()) != 0) ::_exit(1);
    const pid_t between = ::fork();
    if (between == 0) {
      const pid_t orphan = startChildHere();
      const bool isTold = ::write(told[1], &orphan, sizeof orphan) == sizeof orphan;
      ::_exit(isTold ? 0 : 1);
    }
    pid_t orphan = 0;
    if (::read(told[0], &orphan, sizeof orphan) != sizeof orphan) ::_exit(1);
    ::waitpid(between, nullptr, 0);
    return orphan;
  }

  std::array<int, 2> orders_{};
  std::array<int, 2> answers_{};
  pid_t pid_ = -1;
};

// Runs the body as an ordinary user: in a process of its own that gives up root's rights where it
// has them. What fails in there is told and fails here.
inline void asOrdinaryUser(const std::function<void()>& body) {
  constexpr uid_t kNobody = 65'534;
  const pid_t pid = ::fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    const bool isOrdinary =
        ::geteuid() != 0 || (::setresgid(kNobody, kNobody, kNobody) == 0 &&
                             ::setresuid(kNobody, kNobody, kNobody) == 0 && ::geteuid() != 0);
    if (isOrdinary) body();
    ::_exit(isOrdinary && !testing::Test::HasFailure() ? 0 : 1);
  }
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

}  // namespace embrix
