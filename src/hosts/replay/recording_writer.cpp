#include "hosts/replay/recording_writer.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/text.h"

namespace embrix {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

std::string sentence(std::string_view path, std::string_view reason) {
  return fmt::format("cannot record to {}: {}", path, reason);
}

std::string reasonOf(int error) {
  return std::generic_category().message(error);
}

// Empty when the open file is now an empty regular one that its owner alone can read.
std::string madeReady(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return reasonOf(errno);
  if (!S_ISREG(status.st_mode)) return "it is no regular file";
  if (fchmod(descriptor, kOwnerOnly) != 0 || ftruncate(descriptor, 0) != 0) return reasonOf(errno);
  return {};
}

}  // namespace

std::variant<std::shared_ptr<RecordingWriter>, RecordingProblem> RecordingWriter::open(
    const std::string& path) {
  const std::string shown = Text::escapeForTerminal(path);
  // Not to wait for the other end of a pipe; a regular file does not care.
  const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const int descriptor = ::open(path.c_str(), flags, kOwnerOnly);
  if (descriptor < 0) {
    const bool isLink = errno == ELOOP;
    return RecordingProblem{
        sentence(shown, isLink ? std::string("it is a symbolic link") : reasonOf(errno))};
  }
  const std::string reason = madeReady(descriptor);
  if (!reason.empty()) {
    close(descriptor);
    return RecordingProblem{sentence(shown, reason)};
  }
  return std::shared_ptr<RecordingWriter>(new RecordingWriter(descriptor, shown));
}

RecordingWriter::RecordingWriter(int descriptor, std::string path)
    : descriptor_(descriptor), path_(std::move(path)) {}

RecordingWriter::~RecordingWriter() {
  close(descriptor_);
}

void RecordingWriter::append(std::string line) {
  if (!problem_.empty()) return;
  if (line.size() > kLongestRecordingLine) {
    problem_ = sentence(path_, "one tick holds more than a line can");
    return;
  }
  line += '\n';
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t written = write(descriptor_, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      problem_ = sentence(path_, reasonOf(errno));
      return;
    }
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace embrix
