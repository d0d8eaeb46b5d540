// Small files of the kernel's, below a root that stands for "/". Reads what is there and judges
// nothing. One thread at a time for each object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

// The absolute `path` below the root: "/" leaves it as it is.
std::string belowRoot(const std::string& root, std::string_view path);

// The file's first bytes, at most `limit`. Absent when there is no such file or it cannot be read.
std::optional<std::string> readSystemFile(const std::string& path, std::size_t limit = 64 * 1024);

// The file as one line: what stands before the first line end or NUL, blanks at its ends removed.
// Absent when unreadable or empty.
std::optional<std::string> readSystemLine(const std::string& path);

// The text as one decimal number with blanks, tabs and line ends around it. Absent for anything
// else, a number that does not fit included.
std::optional<std::int64_t> wholeInteger(std::string_view text);

std::optional<std::int64_t> readInteger(const std::string& path);

// Names in a directory but "." and "..": shorter before longer, equal lengths by their bytes, so
// that "hwmon2" comes before "hwmon10". Empty when unreadable.
std::vector<std::string> namesIn(const std::string& directory);

// Calls f with each piece of the text between separators, the last one included.
template <typename F>
void forEachPiece(std::string_view text, char separator, F&& f) {
  while (true) {
    const std::size_t end = text.find(separator);
    f(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

// A file that is read at every tick: opened at the first read, kept open, read from its start each
// time. A read that fails closes it, and the next one opens it anew. One that cannot be opened is
// tried again at every sixteenth read: most drivers leave out some of the files that they could
// have.
class HeldFile {
 public:
  explicit HeldFile(std::string path) : path_(std::move(path)) {}
  HeldFile(HeldFile&& other) noexcept;
  HeldFile& operator=(HeldFile&& other) noexcept;
  ~HeldFile() { close(); }

  // As much of the content as the buffer holds; the text lies in the buffer.
  std::optional<std::string_view> read(std::span<char> buffer);

  // The content as one number, as wholeInteger has it.
  std::optional<std::int64_t> integer();

  const std::string& path() const { return path_; }

 private:
  bool open();
  void close() noexcept;

  std::string path_;
  int descriptor_ = -1;
  int readsToSkip_ = 0;
};

}  // namespace embrix
