#include "records/power_log.h"

#include "base/text.h"

namespace embrix {

namespace {

// No character is longer than four bytes of the log, an ill-formed sequence is shorter, and a cut
// inside a character spoils no more than the three bytes after it. What is older cannot count among
// the last characters and is not looked at.
constexpr std::size_t kMostBytes = 4 * PowerLog::kLongestLog + 4;
static_assert(kMostBytes <= PowerLogSource::kMostBytes);

bool beginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// Where the last `count` characters of valid UTF-8 begin.
std::size_t startOfLast(std::size_t count, std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && count > 0) {
    start -= 1;
    if (beginsCharacter(text[start])) count -= 1;
  }
  return start;
}

}  // namespace

std::string PowerLog::read(PowerLogSource& source) {
  std::string log = source.read();
  if (log.size() > kMostBytes) log.erase(0, log.size() - kMostBytes);
  log = Text::repaired(log);
  if (log.size() > kLongestLog) log.erase(0, startOfLast(kLongestLog, log));
  return log;
}

}  // namespace embrix
