#pragma once

#include <optional>
#include <string>

namespace embrix {

class FileSource {
 public:
  virtual ~FileSource() = default;

  // The bytes of a small regular file. Absent when there is none, when it cannot be read, and when
  // it holds more than kMostBytes. Any thread.
  static constexpr std::size_t kMostBytes = 8 * 1024 * 1024;
  virtual std::optional<std::string> read(const std::string& path) = 0;
};

}  // namespace embrix
