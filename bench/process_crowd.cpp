// A crowd of idle processes to measure monitors on:
// process_crowd COUNT [THREADS_IN_ALL [DESCRIPTORS_EACH]].
//
// Starts COUNT children that sleep, with so many further threads shared out evenly among them. With
// DESCRIPTORS_EACH every child listens on a port of its own on 127.0.0.1 and holds so many files
// open in all, half of them sockets. Says "ready" on standard output when all of them are, and ends
// them when its standard input is closed.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

constexpr int kStandardStreams = 3;

void listenSomewhere() {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener, 1) != 0) {
    std::_Exit(1);
  }
}

void hold(int descriptors) {
  listenSomewhere();
  for (int held = kStandardStreams + 1; held < descriptors; ++held) {
    const bool isSocket = held % 2 == 0;
    const int descriptor =
        isSocket ? ::socket(AF_UNIX, SOCK_STREAM, 0) : ::open("/dev/null", O_RDONLY);
    if (descriptor < 0) std::_Exit(1);
  }
}

[[noreturn]] void idle(int threads, int descriptors, int ready) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (descriptors > 0) hold(descriptors);
  for (int i = 0; i < threads; ++i) {
    std::thread([] { ::pause(); }).detach();
  }
  const char byte = 1;
  const bool isTold = ::write(ready, &byte, 1) == 1 && ::close(ready) == 0;
  if (!isTold) std::_Exit(1);
  while (true) ::pause();
}

}  // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 300;
  const int threads = argc > 2 ? std::atoi(argv[2]) : 0;
  const int descriptors = argc > 3 ? std::atoi(argv[3]) : 0;
  std::array<int, 2> ready{};
  if (::pipe(ready.data()) != 0) return 1;
  std::vector<pid_t> children;
  for (int i = 0; i < count; ++i) {
    const pid_t child = ::fork();
    if (child == 0) {
      ::close(ready[0]);
      idle((threads + i) / count, descriptors, ready[1]);
    }
    if (child > 0) children.push_back(child);
  }
  ::close(ready[1]);
  char byte = 0;
  std::size_t told = 0;
  while (::read(ready[0], &byte, 1) > 0) told += 1;
  std::puts("ready");
  std::fflush(stdout);
  while (::read(STDIN_FILENO, &byte, 1) > 0) {
  }
  for (const pid_t child : children) ::kill(child, SIGKILL);
  for (const pid_t child : children) ::waitpid(child, nullptr, 0);
  return static_cast<int>(told) == count ? 0 : 1;
}
