// Numbers turned into the short words that every surface shows. A value reads the same everywhere
// because only these functions write it.
//
// Pure, callable on any thread. The decimal point is "." whatever the locale. Whole units are cut
// off, not rounded, unless it says "rounded". Any number is safe to pass: what is too large for
// whole units counts as the largest, and one that is no number counts as 0; a value that could not
// be measured is the caller's to leave out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct Format {
  // Bytes in binary units, as memory is sold: "1.0 GB" from 1024 MB up, below that "512 MB".
  static std::string memory(std::uint64_t bytes);

  // Bytes in binary units where room is scarce: "0.1 GB" from a tenth up, below that rounded
  // megabytes and never less than "1 MB".
  static std::string memoryShort(std::uint64_t bytes);

  // Bytes in decimal units, as disks are sold: "999 MB", "9.5 GB" below ten, "10 GB" from there.
  static std::string disk(std::int64_t bytes);

  // "59m", "1h 0m", from two days up "2d 0h".
  static std::string durationMinutes(std::int64_t minutes);

  // "59s" below a minute, else as minutes.
  static std::string durationSeconds(double seconds);

  // How long ago something was, in words: "just now", "5 min", "1 hour", "47 hours", "2 days".
  static std::string age(double seconds);

  // The same where room is scarce: "1m" at least, "47h", "2 days".
  static std::string shortAge(double seconds);

  // When something was used last, or added where nothing tells of its use: "used today",
  // "added 3 weeks ago". `seconds` is the time since then.
  static std::string lastUsed(double seconds, bool added);

  // The last piece of a reversed domain name if it has at least 4 characters: "WebContent" for
  // "com.apple.WebKit.WebContent". Any other name, and one with a blank in it, as it is.
  static std::string shortName(std::string_view name);

  // "no port", ":3000", and ":3000 +2" for three: the first and the number of the others.
  static std::string ports(const std::vector<int>& ports);
};

}  // namespace embrix
