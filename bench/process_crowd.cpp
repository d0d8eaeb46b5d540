// A crowd of idle processes to measure monitors on: process_crowd COUNT [THREADS_IN_ALL].
//
// Starts COUNT children that sleep, with so many further threads shared out evenly among them, says
// "ready" on standard output, and ends them all when its standard input is closed.

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

[[noreturn]] void idle(int threads) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (int i = 0; i < threads; ++i) {
    std::thread([] { ::pause(); }).detach();
  }
  while (true) ::pause();
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 300;
  const int threads = argc > 2 ? std::atoi(argv[2]) : 0;
  std::vector<pid_t> children;
  for (int i = 0; i < count; ++i) {
    const pid_t child = ::fork();
    if (child == 0) idle((threads + i) / count);
    if (child > 0) children.push_back(child);
  }
  std::puts("ready");
  std::fflush(stdout);
  char byte = 0;
  while (::read(STDIN_FILENO, &byte, 1) > 0) {
  }
  for (const pid_t child : children) ::kill(child, SIGKILL);
  for (const pid_t child : children) ::waitpid(child, nullptr, 0);
  return static_cast<int>(children.size()) == count ? 0 : 1;
}
