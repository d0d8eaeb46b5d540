#include "hosts/linux/system_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <tuple>
#include <utility>

namespace embrix {

namespace {

constexpr int kReadsBetweenTries = 16;
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

struct CloseDirectory {
  void operator()(DIR* stream) const { ::closedir(stream); }
};

// O_NONBLOCK: a pipe in the place of a file must not hold the program.
int openToRead(const std::string& path) {
  return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

}  // namespace

std::string belowRoot(const std::string& root, std::string_view path) {
  std::string whole = root;
  while (!whole.empty() && whole.back() == '/') whole.pop_back();
  return whole.append(path);
}

std::optional<std::string> readSystemFile(const std::string& path, std::size_t limit) {
  const int descriptor = openToRead(path);
  if (descriptor < 0) return std::nullopt;
  std::string text;
  std::array<char, 4096> piece;
  ssize_t size = 0;
  while (text.size() < limit) {
    size = ::read(descriptor, piece.data(), std::min(piece.size(), limit - text.size()));
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) break;
    text.append(piece.data(), static_cast<std::size_t>(size));
  }
  ::close(descriptor);
  if (size < 0) return std::nullopt;
  return text;
}

std::optional<std::string> readSystemLine(const std::string& path) {
  const auto text = readSystemFile(path);
  if (!text) return std::nullopt;
  const std::string_view line =
      trimmed(std::string_view(*text).substr(0, text->find_first_of(std::string_view("\n\0", 2))));
  if (line.empty()) return std::nullopt;
  return std::string(line);
}

std::optional<std::int64_t> wholeInteger(std::string_view text) {
  text = trimmed(text);
  std::int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int64_t> readInteger(const std::string& path) {
  const auto text = readSystemFile(path, 64);
  return text ? wholeInteger(*text) : std::nullopt;
}

std::vector<std::string> namesIn(const std::string& directory) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, CloseDirectory> stream(::opendir(directory.c_str()));
  if (!stream) return names;
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return std::tuple(a.size(), std::string_view(a)) < std::tuple(b.size(), std::string_view(b));
  });
  return names;
}

HeldFile::HeldFile(HeldFile&& other) noexcept
    : path_(std::move(other.path_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      readsToSkip_(other.readsToSkip_) {}

HeldFile& HeldFile::operator=(HeldFile&& other) noexcept {
  if (this == &other) return *this;
  close();
  path_ = std::move(other.path_);
  descriptor_ = std::exchange(other.descriptor_, -1);
  readsToSkip_ = other.readsToSkip_;
  return *this;
}

std::optional<std::string_view> HeldFile::read(std::span<char> buffer) {
  if (descriptor_ < 0 && !open()) return std::nullopt;
  ssize_t size = 0;
  do {
    size = ::pread(descriptor_, buffer.data(), buffer.size(), 0);
  } while (size < 0 && errno == EINTR);
  if (size >= 0) return std::string_view(buffer.data(), static_cast<std::size_t>(size));
  close();
  return std::nullopt;
}

bool HeldFile::open() {
  if (readsToSkip_ > 0) {
    --readsToSkip_;
    return false;
  }
  descriptor_ = openToRead(path_);
  if (descriptor_ < 0) readsToSkip_ = kReadsBetweenTries - 1;
  return descriptor_ >= 0;
}

std::optional<std::int64_t> HeldFile::integer() {
  std::array<char, 64> buffer;
  const auto text = read(buffer);
  return text ? wholeInteger(*text) : std::nullopt;
}

void HeldFile::close() noexcept {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

}  // namespace embrix
