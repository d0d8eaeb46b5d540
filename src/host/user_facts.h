#pragma once

#include <cstdint>
#include <string>

namespace embrix {

// Whose program this is.
struct UserFacts {
  std::uint32_t uid = 0;      // real user
  std::string homeDirectory;  // absolute, no slash at its end
  // Where programs keep what they write for this user; absolute, no slash at its end. Empty where
  // nothing may be kept, as on a machine that is replayed.
  std::string applicationSupportDirectory;

  bool operator==(const UserFacts&) const = default;
};

}  // namespace embrix
