#include "child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace embrix {

namespace {

// In the child; nothing here allocates but the environment, which no other thread holds.
[[noreturn]] void become(const std::vector<std::string>& commandLine,
                         const std::vector<std::string>& environment, int output, int complaints) {
  const int nothing = ::open("/dev/null", O_RDWR);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(output < 0 ? nothing : output, STDOUT_FILENO);
  ::dup2(complaints < 0 ? nothing : complaints, STDERR_FILENO);
  for (const std::string& pair : environment) ::putenv(const_cast<char*>(pair.c_str()));
  std::vector<char*> arguments;
  for (const std::string& argument : commandLine) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

std::array<int, 2> makePipe() {
  std::array<int, 2> ends = {};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  return ends;
}

// Reads both to their ends, whichever is written first.
void readBoth(int first, std::string& firstText, int second, std::string& secondText) {
  std::array<pollfd, 2> waiting = {{{first, POLLIN, 0}, {second, POLLIN, 0}}};
  std::string* texts[] = {&firstText, &secondText};
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR) return;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].fd < 0 || waiting[i].revents == 0) continue;
      char piece[4096];
      const ssize_t got = ::read(waiting[i].fd, piece, sizeof piece);
      if (got > 0) {
        texts[i]->append(piece, static_cast<std::size_t>(got));
      } else if (got == 0 || errno != EINTR) {
        ::close(waiting[i].fd);
        waiting[i].fd = -1;  // poll passes over it
      }
    }
  }
}

int statusOf(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& commandLine)
    : start_(std::chrono::steady_clock::now()), pid_(::fork()) {
  if (pid_ == 0) become(commandLine, {}, -1, -1);
  if (pid_ < 0) throw std::runtime_error("no child");
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0) end();
}

double ChildProcess::end() {
  ::kill(pid_, SIGKILL);
  rusage usage = {};
  while (::wait4(pid_, nullptr, 0, &usage) < 0 && errno == EINTR) {
  }
  pid_ = -1;
  const std::chrono::duration<double> life = std::chrono::steady_clock::now() - start_;
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return (seconds(usage.ru_utime) + seconds(usage.ru_stime)) / life.count();
}

Outcome outcomeOf(const std::vector<std::string>& commandLine,
                  const std::vector<std::string>& environment) {
  const auto output = makePipe();
  const auto complaints = makePipe();
  const pid_t pid = ::fork();
  if (pid == 0) become(commandLine, environment, output[1], complaints[1]);
  ::close(output[1]);
  ::close(complaints[1]);
  Outcome outcome;
  readBoth(output[0], outcome.output, complaints[0], outcome.complaints);
  if (pid > 0) outcome.exitStatus = statusOf(pid);
  return outcome;
}

RunningProgram::RunningProgram(const std::vector<std::string>& commandLine,
                               const std::vector<std::string>& environment) {
  const auto output = makePipe();
  const auto complaints = makePipe();
  pid_ = ::fork();
  if (pid_ == 0) become(commandLine, environment, output[1], complaints[1]);
  ::close(output[1]);
  ::close(complaints[1]);
  output_ = Descriptor(output[0]);
  complaints_ = Descriptor(complaints[0]);
  if (pid_ < 0) throw std::runtime_error("no child");
}

RunningProgram::~RunningProgram() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  statusOf(pid_);
}

std::optional<std::string> RunningProgram::readLine() {
  while (true) {
    const std::size_t end = unread_.find('\n');
    if (end != std::string::npos) {
      std::string line = unread_.substr(0, end);
      unread_.erase(0, end + 1);
      return line;
    }
    char piece[4096];
    const ssize_t got = ::read(output_.number(), piece, sizeof piece);
    if (got > 0) {
      unread_.append(piece, static_cast<std::size_t>(got));
    } else if (got == 0 || errno != EINTR) {
      return std::nullopt;
    }
  }
}

void RunningProgram::signal(int number) const {
  ::kill(pid_, number);
}

Outcome RunningProgram::end() {
  Outcome outcome;
  readBoth(output_.release(), unread_, complaints_.release(), outcome.complaints);
  outcome.output = std::exchange(unread_, {});
  outcome.exitStatus = statusOf(std::exchange(pid_, -1));
  return outcome;
}

}  // namespace embrix
