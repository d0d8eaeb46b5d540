#include "hosts/posix/command_runner.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

#include "host/program_environment.h"

namespace embrix {

namespace {

// A program to be spawned; standard output goes to `outputDescriptor`, or to /dev/null when that is
// -1.
class Spawn {
 public:
  Spawn(const SpawnManner& manner, int outputDescriptor, bool ownSession) : manner_(manner) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    // First, for the pipe can have got the number of a standard stream that was closed here.
    if (outputDescriptor >= 0) {
      ::posix_spawn_file_actions_adddup2(&actions_, outputDescriptor, STDOUT_FILENO);
    } else {
      ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // Libraries open files that they forget to mark as their own.
    manner_.leaveFilesBehind(actions_);
    // What this process blocks and ignores is its own affair. (What stands without :: is a macro on
    // some systems.)
    sigset_t signals{};
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    sigaddset(&signals, SIGPIPE);
    sigaddset(&signals, SIGXFSZ);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    const int session = ownSession ? POSIX_SPAWN_SETSID : 0;
    ::posix_spawnattr_setflags(&attributes_,
                               static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                  manner_.flags | session));
  }
  ~Spawn() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  Spawn(const Spawn&) = delete;
  Spawn& operator=(const Spawn&) = delete;

  std::optional<pid_t> run(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
      words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    pid_t pid = 0;
    const int error = ::posix_spawn(&pid, program.c_str(), &actions_, &attributes_, words.data(),
                                    programEnvironment(manner_.environment()).data());
    return error == 0 ? std::optional(pid) : std::nullopt;
  }

 private:
  const SpawnManner& manner_;
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

// How the program ended, as waitpid() tells it; absent when that cannot be learned.
std::optional<int> waitFor(pid_t pid) {
  int status = 0;
  pid_t ended = 0;
  do {
    ended = ::waitpid(pid, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == pid ? std::optional(status) : std::nullopt;
}

std::string readToEnd(int descriptor) {
  std::string text;
  std::array<char, 64 * 1024> piece;
  while (true) {
    const ssize_t size = ::read(descriptor, piece.data(), piece.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return text;
    text.append(piece.data(), static_cast<std::size_t>(size));
  }
}

struct Ended {
  std::string output;
  std::optional<int> status;

  bool succeeded() const { return status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0; }
};

std::optional<Ended> runToItsEnd(const SpawnManner& manner, const std::string& program,
                                 const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (!manner.makePipe(ends)) return std::nullopt;
  const auto pid = Spawn(manner, ends[1], false).run(program, arguments);
  ::close(ends[1]);
  std::optional<Ended> ended;
  if (pid) {
    ended = Ended{.output = readToEnd(ends[0]), .status = std::nullopt};
    ended->status = waitFor(*pid);
  }
  ::close(ends[0]);
  return ended;
}

}  // namespace

std::optional<std::string> PosixCommandRunner::output(const std::string& program,
                                                      const std::vector<std::string>& arguments) {
  auto ended = runToItsEnd(manner_, program, arguments);
  if (!ended) return std::nullopt;
  return std::move(ended->output);
}

std::optional<std::string> PosixCommandRunner::successfulOutput(
    const std::string& program, const std::vector<std::string>& arguments) {
  auto ended = runToItsEnd(manner_, program, arguments);
  if (!ended || !ended->succeeded()) return std::nullopt;
  return std::move(ended->output);
}

bool PosixCommandRunner::start(const std::string& program,
                               const std::vector<std::string>& arguments) {
  const auto pid = Spawn(manner_, -1, true).run(program, arguments);
  if (!pid) return false;
  // Somebody must wait for the program, or it stays as a zombie for as long as this one runs.
  try {
    std::thread(waitFor, *pid).detach();
  } catch (const std::system_error&) {
    // No thread to be had: a zombie then, and the program runs all the same.
  }
  return true;
}

}  // namespace embrix
